#include "jet/JetWriter.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <stdexcept>

namespace quorvik::jet
{

namespace
{

constexpr int PageSize = 2048;
constexpr int MapSize = 5 + 128; ///< a usage map: its type, its first page, a bit for each page
constexpr int RowsAt = 10;       ///< in a data page: the places of its rows, two bytes each
constexpr int DeletedRow = 0xC000;
constexpr int PointerRow = 0x4000;
constexpr int PointedAtRow = 0x8000; ///< found by its pointer, and by no other way

constexpr int MapPage = 1;
constexpr int CataloguePage = 2;

void Require(bool isRight, const char *what)
{
    if (!isRight)
        throw std::length_error(what);
}

QByteArray Little(quint64 value, int bytes)
{
    const quint64 little = qToLittleEndian(value);
    return QByteArray(reinterpret_cast<const char *>(&little), bytes);
}

/** RC4 with the key that every file of this version has over its header. */
QByteArray HeaderCode(const QByteArray &plain)
{
    const uchar key[] = {0xC7, 0xDA, 0x39, 0x6B};
    std::array<uchar, 256> state;
    std::iota(state.begin(), state.end(), uchar(0));
    uchar second = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        second = uchar(second + state[i] + key[i % 4]);
        std::swap(state[i], state[second]);
    }
    QByteArray coded;
    uchar first = second = 0;
    for (const char byte : plain) {
        second = uchar(second + state[++first]);
        std::swap(state[first], state[second]);
        coded.append(char(uchar(byte) ^ state[uchar(state[first] + state[second])]));
    }
    return coded;
}

bool IsFixed(const Column &column)
{
    return column.isFixed || (column.type != Type::Text && column.type != Type::LongBinary);
}

int SizeOf(const Column &column)
{
    switch (column.type) {
    case Type::Byte:
        return 1;
    case Type::Integer:
        return 2;
    case Type::Long:
        return 4;
    case Type::Double:
        return 8;
    default:
        return column.size;
    }
}

QByteArray FixedValue(const Column &column, const QVariant &value)
{
    if (column.type == Type::Text)
        return value.toByteArray().leftJustified(column.size, ' ', true);
    quint64 raw = quint64(value.toLongLong());
    if (column.type == Type::Double) {
        const double number = value.toDouble();
        std::memcpy(&raw, &number, sizeof raw);
    }
    return Little(raw, SizeOf(column));
}

/** A row as it lies on its page: how many columns, fixed ones, varying ones, where these begin, which are not
 * Null. */
QByteArray RowBytes(const Table &table, const Row &row)
{
    const int count = int(table.columns.size());
    QByteArray fixed(1, char(count));
    QByteArray varying;
    std::vector<int> begins;
    QByteArray present((count + 7) / 8, '\0');
    for (int i = 0; i < count; ++i) {
        const Column &column = table.columns[std::size_t(i)];
        const QVariant &value = row.values[std::size_t(i)];
        if (!value.isNull())
            present[i / 8] = char(present[i / 8] | (1 << (i % 8)));
        if (IsFixed(column)) {
            fixed += FixedValue(column, value);
        } else {
            begins.push_back(int(varying.size()));
            varying += value.toByteArray().left(column.size);
        }
    }
    if (begins.empty())
        return fixed + present;
    begins.push_back(int(varying.size()));
    for (int &begin : begins)
        begin += int(fixed.size());

    // A beginning is a single byte; further back, for each 256 bytes, stands the first that lies beyond.
    const qsizetype bare = fixed.size() + varying.size() + qsizetype(begins.size()) + 1 + present.size();
    int jumps = 0;
    while ((bare + jumps - 1) / 256 > jumps)
        ++jumps;
    QByteArray places;
    for (std::size_t i = begins.size(); i-- > 0;)
        places.append(char(begins[i]));
    for (int jump = jumps; jump > 0; --jump) {
        std::size_t first = 0;
        while (first < begins.size() && begins[first] < 256 * jump)
            ++first;
        places.append(first < begins.size() ? char(first) : '\xFF');
    }
    return fixed + varying + places + char(begins.size() - 1) + present;
}

class File
{
public:
    int NewPage(int type)
    {
        const int page = int(bytes_.size() / PageSize);
        Require(page < 1024, "too many pages");
        bytes_ += QByteArray(1, char(type)) + '\x01' + QByteArray(PageSize - 2, '\0');
        return page;
    }
    void Put(int page, int at, const QByteArray &content)
    {
        Require(at + content.size() <= PageSize, "too much for a page");
        bytes_.replace(page * PageSize + at, content.size(), content);
    }
    int Number(int page, int at) const
    {
        return qFromLittleEndian<quint16>(bytes_.constData() + page * PageSize + at);
    }
    const QByteArray &Bytes() const { return bytes_; }

    /** Appends a row to a data page. @return its number there, or -1 where it does not fit. */
    int AppendRow(int page, const QByteArray &row, int flags = 0)
    {
        const int number = Number(page, 8);
        const int end = number == 0 ? PageSize : Number(page, RowsAt + 2 * (number - 1)) & 0x1FFF;
        const int begin = end - int(row.size());
        const int free = begin - (RowsAt + 2 * (number + 1));
        if (free < 0)
            return -1;
        Put(page, begin, row);
        Put(page, RowsAt + 2 * number, Little(quint64(begin | flags), 2));
        Put(page, 8, Little(quint64(number + 1), 2));
        Put(page, 2, Little(quint64(free), 2));
        return number;
    }

private:
    QByteArray bytes_;
};

/** One table in the making: its rows, on pages that its usage map names. */
class TableWriter
{
public:
    TableWriter(File &file, const Table &table, int definition)
        : file_(file)
        , table_(table)
        , definition_(definition)
    {
    }

    void Write()
    {
        int page = 0;
        std::vector<std::pair<qsizetype, QByteArray>> elsewhere;
        for (const Row &row : table_.rows) {
            const QByteArray bytes = RowBytes(table_, row);
            if (row.place == Place::Overflow) {
                const int number = Append(page, QByteArray(4, '\0'), PointerRow);
                elsewhere.emplace_back(page * PageSize + RowsAt + 2 * number, bytes);
            } else {
                Append(page, bytes, row.place == Place::Deleted ? DeletedRow : 0);
            }
        }
        page = 0;
        for (const auto &[place, bytes] : elsewhere) {
            const int number = Append(page, bytes, PointedAtRow);
            const int from = int(place) / PageSize;
            file_.Put(from, file_.Number(from, int(place) % PageSize) & 0x1FFF,
                      Little(quint64(number | (page << 8)), 4));
        }
        Define();
    }

private:
    int Append(int &page, const QByteArray &row, int flags)
    {
        int number = page == 0 ? -1 : file_.AppendRow(page, row, flags);
        if (number < 0) {
            page = file_.NewPage(1);
            file_.Put(page, 4, Little(quint64(definition_), 4));
            map_[5 + page / 8] = char(map_[5 + page / 8] | (1 << (page % 8)));
            number = file_.AppendRow(page, row, flags);
            Require(number >= 0, "a row longer than a page");
        }
        return number;
    }

    void Define()
    {
        const int used = file_.AppendRow(MapPage, map_);
        const int unfilled = file_.AppendRow(MapPage, QByteArray(MapSize, '\0'));
        Require(unfilled >= 0, "too many tables");
        QByteArray columns;
        QByteArray names;
        int fixedAt = 0;
        int varying = 0;
        for (std::size_t i = 0; i < table_.columns.size(); ++i) {
            const Column &column = table_.columns[i];
            const bool isFixed = IsFixed(column);
            columns += Little(quint64(column.type), 1) + Little(i, 2) + Little(quint64(varying), 2) +
                       Little(i, 2) + Little(1, 2) + Little(0x0409, 2) + Little(1252, 2) +
                       Little(isFixed ? 3 : 2, 1) + Little(quint64(fixedAt), 2) +
                       Little(quint64(SizeOf(column)), 2);
            (isFixed ? fixedAt : varying) += isFixed ? SizeOf(column) : 1;
            names += Little(quint64(column.name.size()), 1) + column.name;
        }
        const auto present = std::count_if(table_.rows.begin(), table_.rows.end(),
                                           [](const Row &row) { return row.place != Place::Deleted; });
        const quint64 count = table_.columns.size();
        const auto pointer = [](int row) { return Little(quint64(row | (MapPage << 8)), 4); };
        const QByteArray rest = Little(quint64(present), 4) + Little(0, 4) +
                                (definition_ == CataloguePage ? 'S' : 'N') + Little(count, 2) +
                                Little(quint64(varying), 2) + Little(count, 2) + Little(0, 8) +
                                pointer(used) + pointer(unfilled) + columns + names + "\xFF\xFF";
        file_.Put(definition_, 2, "VC");
        file_.Put(definition_, 8, Little(quint64(12 + rest.size()), 4) + rest);
    }

    File &file_;
    const Table &table_;
    int definition_;
    QByteArray map_ = QByteArray(MapSize, '\0');
};

} // namespace

QByteArray Code1252(const QString &text)
{
    // What stands at 80 to 9F; in five places nothing does.
    static const QString above =
        QStringLiteral("\u20AC\uFFFF\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\uFFFF"
                       "\u017D\uFFFF\uFFFF\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A"
                       "\u0153\uFFFF\u017E\u0178");
    QByteArray bytes;
    for (const QChar letter : text) {
        const auto at = above.indexOf(letter);
        const bool isItself =
            letter.unicode() < 0x80 || (letter.unicode() >= 0xA0 && letter.unicode() < 0x100);
        bytes.append(isItself ? char(letter.unicode()) : at >= 0 ? char(0x80 + at) : '?');
    }
    return bytes;
}

QByteArray WriteDatabase(const std::vector<Table> &tables)
{
    File file;
    const int header = file.NewPage(0);
    file.Put(header, 4, "Standard Jet DB");
    QByteArray plain(126, '\0'); // neither password nor key
    plain.replace(0x3A - 0x18, 4, Little(0x0409, 2) + Little(1252, 2));
    file.Put(header, 0x18, HeaderCode(plain));
    file.NewPage(1);
    file.AppendRow(MapPage, QByteArray(MapSize, '\0')); // no page of the file is free
    file.NewPage(2);

    Table catalogue{"MSysObjects",
                    {{"Id"},
                     {"ParentId"},
                     {"Name", Type::Text, 255},
                     {"Type", Type::Integer},
                     {"Flags"},
                     {"LvProp", Type::LongBinary}},
                    {}};
    const auto list = [&](int page, const QByteArray &name, quint32 flags) {
        catalogue.rows.push_back({{page, 0x0F000001, name, 1, int(flags), QVariant()}});
    };
    list(CataloguePage, catalogue.name, 0x80000000);
    for (const Table &table : tables) {
        const int definition = file.NewPage(2);
        TableWriter(file, table, definition).Write();
        list(definition, table.name, 0);
    }
    TableWriter(file, catalogue, CataloguePage).Write();
    return file.Bytes();
}

} // namespace quorvik::jet
