#include "RowTable.h"

#include <algorithm>
#include <cstring>

namespace tessaly::db {

void RowTable::clear() {
    cellBlocks_.clear();
    cellCount_ = 0;
    textBlocks_.clear();
    textUsed_ = textCapacity_ = 0;
    slots_.clear();
    own_.clear();
}

std::size_t RowTable::firstCellOf(int slot) const {
    return static_cast<std::size_t>(slot) * static_cast<std::size_t>(columns_);
}

void RowTable::beginRow() {
    slots_.push_back(columns_ > 0 ? static_cast<int>(cellCount_ / static_cast<std::size_t>(columns_)) : 0);
}

RowTable::Cell& RowTable::cellAt(std::size_t index) {
    return cellBlocks_[index / BlockCells][index % BlockCells];
}

const RowTable::Cell& RowTable::cellAt(std::size_t index) const {
    return cellBlocks_[index / BlockCells][index % BlockCells];
}

RowTable::Cell& RowTable::newCell() {
    if (cellCount_ == cellBlocks_.size() * BlockCells)
        cellBlocks_.push_back(std::make_unique<Cell[]>(BlockCells));
    Cell& c = cellAt(cellCount_++);
    c = Cell();
    return c;
}

void RowTable::storeText(Cell& cell, const char* data, std::size_t bytes) {
    if (textBlocks_.empty() || textUsed_ + bytes > textCapacity_) {
        textCapacity_ = std::max(TextBlockBytes, bytes);
        textBlocks_.push_back(std::make_unique<char[]>(textCapacity_));
        textUsed_ = 0;
    }
    if (bytes > 0)
        std::memcpy(textBlocks_.back().get() + textUsed_, data, bytes);
    cell.extra = static_cast<int>(bytes);
    cell.text.block = static_cast<quint32>(textBlocks_.size() - 1);
    cell.text.offset = static_cast<quint32>(textUsed_);
    textUsed_ += bytes;
}

void RowTable::addNull(int metaType) {
    Cell& c = newCell();
    c.kind = Kind::Null;
    c.extra = metaType;
}

void RowTable::addInteger(qint64 value) {
    Cell& c = newCell();
    c.kind = Kind::LongLong;
    c.integer = value;
}

void RowTable::addDouble(double value) {
    Cell& c = newCell();
    c.kind = Kind::Double;
    c.real = value;
}

void RowTable::addText(const char* utf8, int bytes) {
    Cell& c = newCell();
    c.kind = Kind::Text;
    storeText(c, utf8, static_cast<std::size_t>(bytes));
}

void RowTable::addBytes(const char* data, int bytes) {
    Cell& c = newCell();
    c.kind = Kind::Bytes;
    storeText(c, data, static_cast<std::size_t>(bytes));
}

bool RowTable::encode(const QVariant& value, Cell& cell) {
    const int type = value.metaType().id();
    if (!value.isValid() || value.isNull()) {
        cell.kind = Kind::Null;
        cell.extra = type;
        return true;
    }
    switch (type) {
    case QMetaType::Int:
        cell.kind = Kind::Int;
        cell.integer = value.toInt();
        return true;
    case QMetaType::LongLong:
        cell.kind = Kind::LongLong;
        cell.integer = value.toLongLong();
        return true;
    case QMetaType::Double:
        cell.kind = Kind::Double;
        cell.real = value.toDouble();
        return true;
    case QMetaType::QString: {
        const QByteArray utf8 = value.toString().toUtf8();
        cell.kind = Kind::Text;
        storeText(cell, utf8.constData(), static_cast<std::size_t>(utf8.size()));
        return true;
    }
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        cell.kind = Kind::Bytes;
        storeText(cell, bytes.constData(), static_cast<std::size_t>(bytes.size()));
        return true;
    }
    default:
        return false;
    }
}

QVariant RowTable::decode(const Cell& c) const {
    switch (c.kind) {
    case Kind::Null:
        return c.extra == QMetaType::UnknownType ? QVariant() : QVariant(QMetaType(c.extra));
    case Kind::Int:
        return QVariant(static_cast<int>(c.integer));
    case Kind::LongLong:
        return QVariant(static_cast<qlonglong>(c.integer));
    case Kind::Double:
        return QVariant(c.real);
    case Kind::Text:
        return QVariant(QString::fromUtf8(textBlocks_[c.text.block].get() + c.text.offset, c.extra));
    case Kind::Bytes:
        return QVariant(QByteArray(textBlocks_[c.text.block].get() + c.text.offset, c.extra));
    }
    return {};
}

void RowTable::append(const QVariantList& values) {
    // Kept as records where every value can be; otherwise as the list itself.
    if (values.size() == columns_) {
        const std::size_t start = cellCount_;
        bool plain = true;
        for (const QVariant& v : values)
            if (!encode(v, newCell())) {
                plain = false;
                break;
            }
        if (plain) {
            slots_.push_back(columns_ > 0 ? static_cast<int>(start / static_cast<std::size_t>(columns_)) : 0);
            return;
        }
        cellCount_ = start; // the texts stored on the way stay unused
    }
    own_.push_back(values);
    slots_.push_back(-static_cast<int>(own_.size()));
}

void RowTable::set(int row, const QVariantList& values) {
    const int slot = slots_[static_cast<std::size_t>(row)];
    if (slot < 0) {
        own_[static_cast<std::size_t>(-1 - slot)] = values;
        return;
    }
    own_.push_back(values);
    slots_[static_cast<std::size_t>(row)] = -static_cast<int>(own_.size());
}

void RowTable::erase(int row) {
    slots_.erase(slots_.begin() + row);
}

QVariant RowTable::value(int row, int column) const {
    const int slot = slots_[static_cast<std::size_t>(row)];
    if (slot < 0)
        return own_[static_cast<std::size_t>(-1 - slot)].value(column);
    return decode(cellAt(firstCellOf(slot) + static_cast<std::size_t>(column)));
}

QVariantList RowTable::row(int row) const {
    const int slot = slots_[static_cast<std::size_t>(row)];
    if (slot < 0)
        return own_[static_cast<std::size_t>(-1 - slot)];
    QVariantList out;
    out.reserve(columns_);
    for (int c = 0; c < columns_; ++c)
        out.append(value(row, c));
    return out;
}

} // namespace tessaly::db
