#pragma once

#include <QByteArray>
#include <QVariant>
#include <QVariantList>
#include <cstdint>
#include <memory>
#include <vector>

namespace tessaly::db {

// The rows of a query as the program holds them, kept compactly: the texts of
// all rows as UTF-8 in blocks of 64 KiB, every value a small record, also in
// blocks. A value is made a QVariant only when it is read, so that reading a
// large table allocates a block now and then rather than once for each value,
// never moves what it has read, and lets go of it all in a few frees.
//
// Each value reads back with the type it was stored with (whole numbers,
// doubles, texts, bytes, typed Nulls). A row that holds any other kind of
// value, or one that the program wrote, is kept as a list of its own.
class RowTable {
public:
    int columnCount() const { return columns_; }
    void setColumnCount(int columns) { columns_ = columns; }
    int size() const { return static_cast<int>(slots_.size()); }
    bool empty() const { return slots_.empty(); }
    void clear();

    // A row added value by value, as a fetch reads it: beginRow, then one
    // add... for each column.
    void beginRow();
    void addNull(int metaType = QMetaType::UnknownType);
    void addInteger(qint64 value);
    void addDouble(double value);
    void addText(const char* utf8, int bytes);
    void addBytes(const char* data, int bytes);

    // A whole row at the end, or in place of row `row`.
    void append(const QVariantList& values);
    void set(int row, const QVariantList& values);
    void erase(int row);

    QVariant value(int row, int column) const;
    QVariantList row(int row) const;

private:
    enum class Kind : uint8_t { Null, Int, LongLong, Double, Text, Bytes };
    struct Cell {
        Kind kind = Kind::Null;
        int extra = 0; // the type of a Null; the length of a text
        union {
            qint64 integer;
            double real;
            struct {
                quint32 block;  // the text block
                quint32 offset; // where in it the text starts
            } text;
        };
        Cell() : integer(0) {}
    };
    static constexpr std::size_t BlockCells = 4096;      // values a block of records holds
    static constexpr std::size_t TextBlockBytes = 65536; // bytes of a text block (a longer text has its own)

    // Whether a value can be kept as a record, and the record for it.
    bool encode(const QVariant& value, Cell& cell);
    QVariant decode(const Cell& cell) const;
    Cell& newCell();
    Cell& cellAt(std::size_t index);
    const Cell& cellAt(std::size_t index) const;
    void storeText(Cell& cell, const char* data, std::size_t bytes);
    std::size_t firstCellOf(int slot) const;

    int columns_ = 0;
    std::vector<std::unique_ptr<Cell[]>> cellBlocks_; // the stored rows' values, row after row
    std::size_t cellCount_ = 0;
    std::vector<std::unique_ptr<char[]>> textBlocks_; // their texts and bytes
    std::size_t textUsed_ = 0;                        // bytes used of the last text block
    std::size_t textCapacity_ = 0;                    // bytes of the last text block
    std::vector<int> slots_; // each row: a stored row (>= 0) or a list of its own (-1 - index)
    std::vector<QVariantList> own_;
};

} // namespace tessaly::db
