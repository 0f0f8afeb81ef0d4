#include "jet/JetDump.h"

#include "jet/JetText.h"

#include <cmath>
#include <cstring>
#include <mdbtools.h>
#include <memory>
#include <optional>
#include <string>

namespace quorvik
{

namespace
{

constexpr unsigned char DataPage = 1;
constexpr int OffsetMask = 0x1fff;
/** Of a row's place: the row lies elsewhere, and four bytes here say where. */
constexpr int IsPointer = 0x4000;
/** The row was deleted, or is one to which a pointer leads from its own place. */
constexpr int IsHidden = 0x8000;

struct CloseHandle {
    void operator()(MdbHandle *mdb) const { mdb_close(mdb); }
};
struct FreeTable {
    void operator()(MdbTableDef *table) const { mdb_free_tabledef(table); }
};
using TablePtr = std::unique_ptr<MdbTableDef, FreeTable>;

const char *TypeText(int type)
{
    switch (type) {
    case MDB_BOOL:
        return "bool";
    case MDB_BYTE:
        return "byte";
    case MDB_INT:
        return "integer";
    case MDB_LONGINT:
        return "long";
    case MDB_MONEY:
        return "money";
    case MDB_FLOAT:
        return "single";
    case MDB_DOUBLE:
        return "double";
    case MDB_DATETIME:
        return "date";
    case MDB_TEXT:
        return "text";
    default:
        return "other";
    }
}

/** A number of the given type from little-endian bytes, as all of this format are; nothing where the field
 * has another size. */
template<typename Number> std::optional<Number> Read(std::string_view bytes)
{
    Number number{};
    if (bytes.size() != sizeof number)
        return std::nullopt;
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

template<typename Number> std::optional<std::string> WholeText(std::string_view bytes)
{
    const std::optional<Number> number = Read<Number>(bytes);
    return number ? std::optional(std::to_string(*number)) : std::nullopt;
}

std::string RealText(double number)
{
    if (!std::isfinite(number))
        return "{}";
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", number);
    return text;
}

template<typename Number> std::optional<std::string> RealText(std::string_view bytes)
{
    const std::optional<Number> number = Read<Number>(bytes);
    return number ? std::optional(RealText(double(*number))) : std::nullopt;
}

/** Ten-thousandths. */
std::optional<std::string> MoneyText(std::string_view bytes)
{
    constexpr std::int64_t unit = 10000;
    const std::optional<std::int64_t> number = Read<std::int64_t>(bytes);
    if (!number)
        return std::nullopt;
    return *number % unit == 0 ? std::to_string(*number / unit) : RealText(double(*number) / double(unit));
}

/** A value as JSON; nothing where it cannot be one of its type. */
std::optional<std::string> ValueText(int type, std::string_view bytes)
{
    switch (type) {
    case MDB_BYTE:
        return WholeText<std::uint8_t>(bytes);
    case MDB_INT:
        return WholeText<std::int16_t>(bytes);
    case MDB_LONGINT:
        return WholeText<std::int32_t>(bytes);
    case MDB_MONEY:
        return MoneyText(bytes);
    case MDB_FLOAT:
        return RealText<float>(bytes);
    case MDB_DOUBLE:
    case MDB_DATETIME:
        return RealText<double>(bytes);
    case MDB_TEXT:
        return JsonText(Utf8Of(bytes));
    default:
        return "{}";
    }
}

/** The rows of one table, page by page. The library's own reading of rows is not used: it passes over what it
 * cannot make out, and gives a row that has moved to another page at its new place. */
class Rows
{
public:
    /** @param out may be null, for a look at whether the table is whole. */
    Rows(MdbTableDef &table, std::FILE *out)
        : table_(table)
        , mdb_(*table.entry->mdb)
        , out_(out)
    {
    }

    /** @return whether the table is whole. */
    bool Dump()
    {
        mdb_rewind_table(&table_);
        while (mdb_read_next_dpg(&table_) != 0) {
            const int rows = mdb_get_int16(mdb_.pg_buf, mdb_.fmt->row_count_offset);
            for (int row = 0; row < rows; ++row) {
                if (!DumpSlot(row))
                    return false;
                if (count_ == JetMostRows)
                    return true;
            }
        }
        return count_ == int(table_.num_rows);
    }

private:
    bool DumpSlot(int row)
    {
        int start = 0;
        std::size_t size = 0;
        if (mdb_find_row(&mdb_, row, &start, &size) != 0)
            return false;
        if ((start & IsHidden) != 0)
            return true;
        if ((start & IsPointer) == 0)
            return DumpRow(start & OffsetMask, size);
        if (size < sizeof(std::uint32_t))
            return false;
        return DumpMoved(int(mdb_get_int32(mdb_.pg_buf, start & OffsetMask)));
    }

    bool DumpMoved(int place)
    {
        void *page = nullptr;
        int start = 0;
        std::size_t size = 0;
        if (place < 0 || mdb_find_pg_row(&mdb_, place, &page, &start, &size) != 0)
            return false;
        mdb_swap_pgbuf(&mdb_);
        // A pointer that led to another one would be none of this format.
        const bool isDone = mdb_.pg_buf[0] == DataPage && DumpRow(start, size);
        mdb_swap_pgbuf(&mdb_);
        return isDone;
    }

    bool DumpRow(int start, std::size_t size)
    {
        std::vector<MdbField> fields(table_.num_cols);
        if (size == 0 || mdb_crack_row(&table_, start, size, fields.data()) < 0)
            return false;
        std::string line = "[";
        for (const MdbField &field : fields) {
            const std::optional<std::string> text = FieldText(field);
            if (!text)
                return false;
            line += (line.size() > 1 ? "," : "") + *text;
        }
        line += "]\n";
        if (out_)
            std::fputs(line.c_str(), out_);
        ++count_;
        return true;
    }

    std::optional<std::string> FieldText(const MdbField &field)
    {
        const auto *column =
            static_cast<const MdbColumn *>(g_ptr_array_index(table_.columns, unsigned(field.colnum)));
        if (column->col_type == MDB_BOOL)
            return field.is_null ? "false" : "true";
        if (field.is_null)
            return "null";
        if (field.start < 0 || field.siz < 0 || field.start + field.siz > int(mdb_.fmt->pg_size))
            return std::nullopt;
        const std::string_view bytes(reinterpret_cast<const char *>(mdb_.pg_buf) + field.start,
                                     std::size_t(field.siz));
        return ValueText(column->col_type, bytes);
    }

    MdbTableDef &table_;
    MdbHandle &mdb_;
    std::FILE *out_;
    int count_ = 0;
};

void DumpHead(const MdbTableDef &table, std::FILE *out)
{
    std::string line = "{\"table\":" + JsonText(table.name) + ",\"columns\":[";
    for (unsigned i = 0; i < table.num_cols; ++i) {
        const auto *column = static_cast<const MdbColumn *>(g_ptr_array_index(table.columns, i));
        line += (i > 0 ? ",[" : "[") + JsonText(column->name) + ",\"" + TypeText(column->col_type) + "\"]";
    }
    line += "]}\n";
    std::fputs(line.c_str(), out);
}

JetExit ProtectionOf(const MdbFile &file)
{
    constexpr int western = 1252;
    if (file.db_key != 0)
        return JetExit::Encrypted;
    for (const char each : file.db_passwd)
        if (each != 0)
            return JetExit::Password;
    return file.code_page == western ? JetExit::Done : JetExit::CodePage;
}

/** Whether the list of all that the file holds is whole: it has a row for itself. */
bool IsCatalogueWhole(GPtrArray &catalogue)
{
    constexpr unsigned long page = 2;
    for (unsigned i = 0; i < catalogue.len; ++i) {
        auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(&catalogue, i));
        if (entry->table_pg != page || entry->object_type != MDB_TABLE)
            continue;
        const TablePtr table(mdb_read_table(entry));
        return table && mdb_read_columns(table.get()) && Rows(*table, nullptr).Dump();
    }
    return false;
}

} // namespace

JetExit DumpJet(std::vector<char> &file, std::FILE *out)
{
    const std::unique_ptr<MdbHandle, CloseHandle> mdb(mdb_open_buffer(file.data(), file.size(), MDB_NOFLAGS));
    if (!mdb || mdb->f->jet_version != MDB_VER_JET3)
        return JetExit::Damaged;
    if (const JetExit exit = ProtectionOf(*mdb->f); exit != JetExit::Done)
        return exit;
    GPtrArray *catalogue = mdb_read_catalog(mdb.get(), MDB_TABLE);
    if (!catalogue || !IsCatalogueWhole(*catalogue))
        return JetExit::Damaged;
    int tables = 0;
    for (unsigned i = 0; i < catalogue->len; ++i) {
        auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(catalogue, i));
        if (entry->object_type != MDB_TABLE || !mdb_is_user_table(entry))
            continue;
        const TablePtr table(mdb_read_table(entry));
        if (!table || ++tables > JetMostTables || !mdb_read_columns(table.get()))
            return JetExit::Damaged;
        DumpHead(*table, out);
        if (!Rows(*table, out).Dump())
            return JetExit::Damaged;
    }
    std::fputs("{}\n", out);
    return JetExit::Done;
}

} // namespace quorvik
