#include "jet/JetSettings.h"

#include "platform/DBEngine.h"
#include "settings/SetFixture.h"

#include <QRandomGenerator>
#include <functional>

namespace quorvik::jet
{

namespace
{

class JetSettingsTest : public testing::SetTest
{
protected:
    QString Open(const std::vector<Table> &tables)
    {
        EXPECT_TRUE(WriteFile(path, tables));
        StartAnew();
        return file.LoadSettings(path);
    }

    QString path = Path("older.Svx");
};

TEST_F(JetSettingsTest, EveryRecordNoteAndSlotComesBackAtItsPlace)
{
    QRandomGenerator random(7);
    const auto any = [&] { return std::int32_t(random.generate()); };
    // Names around the length at which a row needs its second way of telling where its texts begin.
    const QString letters = QStringLiteral("\u20AC\u0160\u00E4\u00F6\u00FC\u00B5\u2122 a letter");
    ParameterTable given;
    Document givenDocument{given};
    ASSERT_EQ(SettingsFile(given, givenDocument).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)),
              QString());
    given.LastParam = 599;
    given.Resize(given.LastParam);
    for (int i = 0; i <= given.LastParam; ++i)
        given.Row(i) = {any(), any(), any(), any(), any(), letters.repeated(4).left(i % 41)};
    for (int p = Param::SaveParameters; Param::IsCommand(p); ++p)
        given.Row(p).Value = 0; // a command is none that a file could give
    for (VirtualSetting &slot : givenDocument.VirtualSettings)
        slot = {std::int16_t(any()), any(), any(), any()};
    // All lengths around that at which the notes need a byte more.
    for (const int length : {0, 1, 247, 248, 249, 250, 251, 252, 253, 254, 255}) {
        givenDocument.Notes = letters.repeated(20).left(length);
        std::vector<Table> tables = SettingsTables(given, givenDocument);
        for (std::size_t i = 0; length % 3 == 1 && i < tables[Settings].rows.size(); i += 7)
            tables[Settings].rows[i].place = Place::Overflow;
        if (length % 2 == 1)
            AddDeletedRows(tables[Settings], 1 + length % 11);
        ASSERT_EQ(Open(tables), QString()) << length;
        EXPECT_EQ(document.Notes, length == 0 ? QStringLiteral(" ") : givenDocument.Notes);
        EXPECT_EQ(document.VirtualSettings, givenDocument.VirtualSettings);
        ASSERT_EQ(table.LastParam, given.LastParam);
        for (int i = 0; i <= given.LastParam; ++i) {
            const ParamRecord &record = table[i];
            EXPECT_EQ(
                std::tie(record.Min, record.Max, record.Attributes, record.Preset, record.Value),
                std::tie(given[i].Min, given[i].Max, given[i].Attributes, given[i].Preset, given[i].Value))
                << i;
            EXPECT_EQ(record.Name, given[i].Name) << i;
        }
    }
}

TEST_F(JetSettingsTest, ATableOfAnotherShapeIsReadWhereNothingIsLostAndRefusedElsewhere)
{
    const auto tables = SettingsTables(table, document);
    auto changed = tables;
    changed[Settings].columns[0].type = Type::Byte;
    changed[Settings].columns[6].isFixed = true; // filled up with blanks
    for (Row &row : changed[Settings].rows)
        row.values[0] = 1;
    EXPECT_EQ(Open(changed), QString());
    EXPECT_EQ(table[Param::Reference0].Name.trimmed(), QStringLiteral("Reference 0"));

    const auto refused = [&](const char *what, const std::function<void(std::vector<Table> &)> &change) {
        auto others = tables;
        change(others);
        EXPECT_TRUE(Open(others).endsWith(u'.')) << what;
    };
    refused("no row of notes", [](auto &all) { all[Properties].rows.clear(); });
    refused("Null for a number", [](auto &all) { all[Settings].rows[5].values[3] = QVariant(); });
    refused("a text for a number", [](auto &all) { all[Settings].columns[1] = {"Min", Type::Text, 9}; });
    refused("half a number", [](auto &all) {
        all[Settings].columns[1].type = Type::Double;
        for (Row &row : all[Settings].rows)
            row.values[1] = 0.5;
    });
    refused("a name too long", [](auto &all) {
        all[Settings].columns[6].size = 50;
        all[Settings].rows[3].values[6] = QByteArray(41, 'x');
    });
    refused("no column for values", [](auto &all) { all[Settings].columns[5].name = "Worth"; });
    refused("another table", [](auto &all) { all[Settings].name = "Adjustments"; });
    auto withoutSlots = tables;
    withoutSlots.pop_back();
    EXPECT_EQ(Open(withoutSlots), QString());
}

} // namespace

} // namespace quorvik::jet
