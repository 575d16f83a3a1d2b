#include "pdf/object_collections.h"

namespace vornaset {

void raiseBeyondEnd(size_t index, size_t count) {
    throw RangeException("index " + std::to_string(index) + " beyond the end of a list of " + std::to_string(count) +
                         " objects");
}

void raiseAbsentEntry() {
    throw InvalidArgumentException("an absent object can't stand in a list");
}

Handle<MyPDFObj> ObjectMap::objectForKey(const String& key) const {
    if (!body_) return nullptr;
    const size_t index = body_->keys.indexOf(key);
    return index == KeyTable::npos ? nullptr : body_->values[index];
}

void ObjectMap::setObject(Handle<MyPDFObj> object, const String& key) const {
    if (!body_) return;
    if (key.isNull()) throw InvalidArgumentException("an absent key can't stand in a dictionary");
    const size_t index = body_->keys.indexOf(key);
    if (index != KeyTable::npos && object) {
        body_->values[index] = std::move(object);
    } else if (index != KeyTable::npos) {
        // The object may hold the last handle on this map: it goes when the map is whole again.
        object = std::move(body_->values[index]);
        body_->values.erase(body_->values.begin() + static_cast<ptrdiff_t>(index));
        body_->keys.removeAt(index);
    } else if (object) {
        body_->values.push_back(std::move(object));
        body_->keys.append(key);
    }
}

void ObjectMap::removeAll() const {
    if (!body_) return;
    const std::shared_ptr<Body> kept = body_;
    kept->keys.removeAll();
    std::vector<Handle<MyPDFObj>> going;
    going.swap(kept->values);
}

String ObjectMap::keyAt(size_t index) const {
    if (!body_) return {};
    if (index >= count()) raiseBeyondEnd(index, count());
    return body_->keys.keyAt(index);
}

Handle<MyPDFObj> ObjectMap::objectAt(size_t index) const {
    if (!body_) return nullptr;
    if (index >= count()) raiseBeyondEnd(index, count());
    return body_->values[index];
}

String ObjectMap::description() const {
    if (!body_) return {};
    std::string text = "{\n";
    for (size_t index = 0; index < count(); ++index) {
        text += "    " + body_->keys.keyAt(index).utf8() + " = " + body_->values[index]->pdfString().utf8() + ";\n";
    }
    return String::fromDamagedUTF8(text + "}");
}

}  // namespace vornaset
