// Renders every window to a picture, and lists the help topics that the windows ask for:
// quorvik-pictures FOLDER [--dark] [--scale 2] [--font 1.5] [--only Text]

#include "Album.h"

#include "desktop/BoxColors.h"
#include "desktop/Desk.h"
#include "desktop/MarkStyle.h"
#include "link/DriveLink.h"
#include "link/ValueStates.h"
#include "model/Document.h"
#include "operations/EntryRules.h"
#include "operations/Guards.h"
#include "operations/TripRecords.h"
#include "platform/Asker.h"
#include "platform/SettingsStore.h"
#include "settings/SettingsFile.h"
#include "tour/NoHelp.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QTemporaryDir>
#include <cstdio>

namespace
{

using namespace quorvik;

class SilentAsker : public Asker
{
public:
    MsgAnswer MsgBox(const QString &text, MsgButtons, MsgIcon, const QString &) override
    {
        std::fprintf(stderr, "%s\n", qPrintable(text));
        return MsgAnswer::Cancel;
    }
    std::optional<QString> ShowOpen(const FileDialogRequest &) override { return {}; }
    std::optional<QString> ShowSave(const FileDialogRequest &) override { return {}; }
};

QPalette DarkPalette()
{
    const QColor paper(40, 42, 46);
    // Derives what is not said, shades and alternate rows among it.
    QPalette palette(paper.lighter(120), paper);
    palette.setColor(QPalette::Base, paper.darker(130));
    palette.setColor(QPalette::AlternateBase, paper.darker(115));
    palette.setColor(QPalette::Highlight, QColor(70, 140, 220));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
            palette.setColor(group, role, QColor(230, 230, 230));
    return palette;
}

/** Measured values as on a running machine, so that a picture shows more than zeros. */
void LetItRun(ParameterTable &table)
{
    const std::pair<int, std::int32_t> values[] = {
        {139, 2047}, {132, 1},    {189, 4000}, {129, 4000}, {192, 12},   {193, 3988}, {194, 3988},
        {198, 3990}, {200, 698},  {205, 2340}, {212, 1},    {417, 201},  {101, 2340}, {164, 29990},
        {165, 1},    {168, 1638}, {422, 1},    {224, 4000}, {225, 4000}, {217, 4000}, {102, 2335},
        {106, 611},  {114, 312},  {242, 1},    {244, 1},    {336, 4990}, {338, 205},
    };
    for (const auto &[number, value] : values)
        table.Row(number).Value = value;
}

/** What the drive of these pictures tells when it loses a phase of the line. */
void LetItTrip(ParameterTable &table, DriveLink &link, qint64 &now)
{
    constexpr std::int32_t eStop = 8;
    constexpr std::int32_t phaseLoss = 64;
    constexpr qint64 answer = 20;
    for (const TripRow &row : TripRows()) {
        now += answer;
        Q_EMIT link.Confirmed(row.param, table.Value(row.param));
    }
    now += answer;
    Q_EMIT link.Confirmed(Param::DriveState, eStop);
    for (const int p : {Param::PresentFault, Param::LatchedFault}) {
        now += answer;
        Q_EMIT link.Confirmed(p, phaseLoss);
    }
    // It has been cleared since.
    int word = Param::FaultLog1Faults;
    for (const std::int32_t rawValue : {phaseLoss, 12, 41, 14, 1, 22, 11, 26})
        table.Row(word++).Value = rawValue;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setApplicationVersion(QStringLiteral(QUORVIK_VERSION));
    QApplication::setStyle(new MarkStyle(QStringLiteral("Fusion")));

    QCommandLineParser options;
    options.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("where the pictures go"));
    options.addOption({QStringLiteral("dark"), QStringLiteral("a dark palette")});
    options.addOption({QStringLiteral("scale"), QStringLiteral("pixels to a pixel"), QStringLiteral("factor"),
                       QStringLiteral("1")});
    options.addOption({QStringLiteral("font"), QStringLiteral("scale of the font"), QStringLiteral("factor"),
                       QStringLiteral("1")});
    options.addOption(
        {QStringLiteral("only"), QStringLiteral("captions that hold this"), QStringLiteral("text")});
    options.addHelpOption();
    options.process(application);
    if (options.positionalArguments().size() != 1)
        options.showHelp(2);

    if (options.isSet(QStringLiteral("dark")))
        QApplication::setPalette(DarkPalette());
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * options.value(QStringLiteral("font")).toDouble());
    QApplication::setFont(font);

    const QTemporaryDir profile;
    ParameterTable table;
    Document document{table};
    AccessColors colors;
    colors.Colors = colors.DefaultColors;
    if (const QString trouble = LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), table);
        !trouble.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(trouble));
        return 1;
    }
    table.ResetToDefaults();
    LetItRun(table);
    SilentAsker asker;
    EntryRules rules(table, asker);
    Guards guards(table, document, asker);
    SettingsStore settings(profile.filePath(QStringLiteral("Quorvik.ini")));
    NoHelp help;
    FormsCollection forms;
    QWidget mainWindow;
    forms.Add(&mainWindow);
    DriveLink link{table};
    qint64 now = 0;
    ValueStates states{table, link, [&now] { return now; }};
    TripRecords trips{table, link, states, [&now] { return now; }};
    LetItTrip(table, link, now);
    Desk desk{table, states, trips, document, colors, rules, guards, asker, settings, help, forms, {}, {}};

    const QDir folder(options.positionalArguments().first());
    folder.mkpath(QStringLiteral("."));
    Album album(desk, folder,
                {.scale = options.value(QStringLiteral("scale")).toDouble(),
                 .only = options.value(QStringLiteral("only"))});
    album.TakeBlocks();
    album.TakeFollowedSignal();
    album.TakeMentors();
    album.TakeProcedures();
    album.TakeOthers();
    album.AddTopic(QStringLiteral("Sarvex Manual.htm"));

    QFile topics(folder.filePath(QStringLiteral("topics.txt")));
    const QByteArray names = album.Topics().join(u'\n').toUtf8() + '\n';
    return topics.open(QIODevice::WriteOnly) && topics.write(names) == names.size() ? 0 : 1;
}
