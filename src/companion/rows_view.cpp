#include "companion/rows_view.h"

#include <string>
#include <utility>
#include <vector>

namespace companion {
namespace {

using vornaset::Array;
using vornaset::Dictionary;
using vornaset::KeyTable;
using vornaset::String;
using vornaset::Value;

/// What all rows of a table share.
class SharedColumns {
  public:
    explicit SharedColumns(std::shared_ptr<const DataTable> table) : table_(std::move(table)) {
        for (std::size_t column = 0; column < table_->columns().size(); ++column) {
            if (table_->columns()[column].empty()) continue;
            keys_.append(String::fromUTF8(table_->columns()[column]));
            columns_.push_back(column);
        }
    }

    const KeyTable& keys() const { return keys_; }

    Value text(std::size_t row, std::size_t key, std::vector<ScannedCell>& found) const {
        RawCell cell = table_->rawCell(row, columns_[key], found);
        if (cell.content.find_first_of("\"\r\n\v") == std::string_view::npos) return String::fromUTF8(cell.content);
        std::string text;
        resolveCell(cell, [&](std::string_view piece) { text += piece; });
        return String::fromUTF8(text);
    }

  private:
    std::shared_ptr<const DataTable> table_;
    KeyTable keys_;
    std::vector<std::size_t> columns_;  ///< by key
};

class Row : public vornaset::DictionarySource {
  public:
    Row(std::shared_ptr<const SharedColumns> shared, std::size_t row) : shared_(std::move(shared)), row_(row) {}

    std::size_t count() const override { return shared_->keys().count(); }
    String keyAt(std::size_t index) const override { return shared_->keys().keyAt(index); }
    Value valueAt(std::size_t index) const override { return shared_->text(row_, index, found_); }
    Value find(const String& key) const override {
        std::size_t index = shared_->keys().indexOf(key);
        return index == KeyTable::npos ? Value() : shared_->text(row_, index, found_);
    }

  private:
    std::shared_ptr<const SharedColumns> shared_;
    std::size_t row_;
    mutable std::vector<ScannedCell> found_;  ///< a fill asks a record for several of its cells
};

class EmptyRow : public vornaset::DictionarySource {
  public:
    explicit EmptyRow(std::shared_ptr<const SharedColumns> shared) : shared_(std::move(shared)) {}

    std::size_t count() const override { return shared_->keys().count(); }
    String keyAt(std::size_t index) const override { return shared_->keys().keyAt(index); }
    Value valueAt(std::size_t) const override { return String(u""); }
    Value find(const String& key) const override {
        return shared_->keys().indexOf(key) == KeyTable::npos ? Value() : Value(String(u""));
    }

  private:
    std::shared_ptr<const SharedColumns> shared_;
};

class Rows : public vornaset::ArraySource {
  public:
    Rows(std::shared_ptr<const DataTable> table, std::size_t rows, std::size_t padding)
        : shared_(std::make_shared<SharedColumns>(std::move(table))), rows_(rows), padding_(padding) {}

    std::size_t count() const override { return rows_ + padding_; }
    Value objectAt(std::size_t index) const override {
        if (index < rows_) return Dictionary::view(std::make_shared<Row>(shared_, index));
        return Dictionary::view(std::make_shared<EmptyRow>(shared_));
    }

  private:
    std::shared_ptr<const SharedColumns> shared_;
    std::size_t rows_;
    std::size_t padding_;
};

}  // namespace

Array rowsView(std::shared_ptr<const DataTable> table, std::size_t rows, std::size_t padding) {
    return Array::view(std::make_shared<Rows>(std::move(table), rows, padding), vornaset::Mutability::changeable);
}

}  // namespace companion
