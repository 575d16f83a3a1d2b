#include "support/dictionary_access.h"

#include <algorithm>

#include "support/strings.h"

namespace vornaset {

namespace {

/// What the first argument of an integer getter has under the key. Whatever answers for a key is asked.
Value answerForKey(const Value& holder, const String& key) {
    if (holder.isDictionary()) return holder.dictionary().valueForKey(key);
    if (!holder.isObject()) return {};
    try {
        return holder.object()->valueForKey(key);
    } catch (const Exception&) {
        return {};
    }
}

/// The dictionary in which the last word of a key path stands, or null; `key` becomes that last word.
Dictionary holderForKeyPath(Dictionary holder, String& key) {
    for (size_t dot = key.find(u'.'); dot != String::npos && holder; dot = key.find(u'.')) {
        holder = holder.valueForKey(key.substring(0, dot)).dictionary();
        key = key.substring(dot + 1);
    }
    return holder;
}

}  // namespace

Dictionary dictForKey(const Value& dictionary, const String& key, uint8_t create) {
    Dictionary holder = dictionary.dictionary();
    if (!holder.isMutable() || key.isNull()) return {};
    const Value value = holder.valueForKey(key);
    if (!value.isNull() || create != 1) return value.dictionary();
    Dictionary made = Dictionary::makeMutable();
    holder.setValue(key, made);
    return made;
}

Array arrayForKey(const Value& dictionary, const String& key, uint8_t create) {
    Dictionary holder = dictionary.dictionary();
    if (!holder.isMutable() || key.isNull()) return {};
    const Value value = holder.valueForKey(key);
    if (!value.isNull()) return value.array().isMutable() ? value.array() : Array();
    if (create != 1) return {};
    Array made = Array::makeMutable();
    holder.setValue(key, made);
    return made;
}

Array arrayForKey(const Value& dictionary, const String& key, const Array& defaultArray) {
    if (!dictionary.isDictionary()) return {};
    const Value value = dictionary.dictionary().valueForKey(key);
    return value.array().isMutable() ? value.array() : defaultArray;
}

String stringForKey(const Dictionary& dictionary, const String& key, const String& defaultText) {
    const Value value = dictionary.valueForKey(key);
    if (value.isString()) return value.string();
    if (value.isNumber()) return value.number().text();
    return defaultText;
}

String stringForKey(const Value& dictionary, const String& key, const String& defaultText) {
    return stringForKey(dictionary.dictionary(), key, defaultText);
}

String stringForKey(const Dictionary& dictionary, const char* key, const String& defaultText) {
    return stringForKey(dictionary, String(key), defaultText);
}

String stringForKey(const Value& dictionary, const char* key, const String& defaultText) {
    return stringForKey(dictionary.dictionary(), String(key), defaultText);
}

int64_t integerForKey(const Dictionary& dictionary, const String& key, int64_t defaultNumber) {
    return dictionary.valueForKey(key).integerReading().value_or(defaultNumber);
}

int64_t integerForKey(const Value& dictionary, const String& key, int64_t defaultNumber) {
    return answerForKey(dictionary, key).integerReading().value_or(defaultNumber);
}

int64_t integerForKey(const Dictionary& dictionary, const char* key, int64_t defaultNumber) {
    return integerForKey(dictionary, String(key), defaultNumber);
}

int64_t integerForKey(const Value& dictionary, const char* key, int64_t defaultNumber) {
    return integerForKey(dictionary, String(key), defaultNumber);
}

int32_t intForKey(const Dictionary& dictionary, const String& key, int32_t defaultNumber) {
    return dictionary.valueForKey(key).intReading().value_or(defaultNumber);
}

int32_t intForKey(const Value& dictionary, const String& key, int32_t defaultNumber) {
    return answerForKey(dictionary, key).intReading().value_or(defaultNumber);
}

double floatForKey(const Dictionary& dictionary, const String& key, double defaultNumber) {
    const String text = stringForKey(dictionary, key);
    return text.isNull() ? defaultNumber : floatWithDecimalComma(text);
}

double floatForKey(const Value& dictionary, const String& key, double defaultNumber) {
    return floatForKey(dictionary.dictionary(), key, defaultNumber);
}

Array stringsForKey(const Array& objects, const String& key) {
    Array result = Array::makeMutable();
    try {
        for (const Value& object : objects) result.add(object.valueForKey(key));
    } catch (const Exception&) {
        return result;
    }
    return result;
}

void setStringForKey(const Dictionary& dictionary, const String& key, const String& text) {
    Dictionary holder = dictionary;
    if (!holder.isMutable() || key.isNull()) return;
    if (text.isNull()) {
        holder.removeKey(key);
        return;
    }
    String lastWord = key;
    holder = holderForKeyPath(holder, lastWord);
    if (holder.isMutable()) holder.setValue(lastWord, text);
}

void setStringForKey(const Dictionary& dictionary, const char* key, const String& text) {
    setStringForKey(dictionary, String(key), text);
}

void setIntegerForKey(const Dictionary& dictionary, const String& key, int64_t number) {
    setStringForKey(dictionary, key, stringWithInteger(number));
}

void setIntegerForKey(const Dictionary& dictionary, const char* key, int64_t number) {
    setIntegerForKey(dictionary, String(key), number);
}

void setFloatForKey(const Dictionary& dictionary, const String& key, double number) {
    setStringForKey(dictionary, key, stringForFloat3(number));
}

void setFloatForKey3(const Dictionary& dictionary, const String& key, double number) {
    setFloatForKey(dictionary, key, number);
}

String stringForFloat3(double number) {
    return stringWithFloat(number);
}

}  // namespace vornaset
