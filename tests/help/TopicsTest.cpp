#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "desktop/FormModifyParameterValue.h"
#include "emulator/forms/FormIOSimulator.h"
#include "link/DriveLink.h"
#include "link/forms/FormCommunications.h"
#include "link/forms/FormProgressBar.h"
#include "link/forms/FormSelectCommMode.h"
#include "operator/FormVirtualOperator.h"
#include "operator/FormVirtualOperatorSetup.h"
#include "settings/forms/FilePrint.h"
#include "settings/forms/FormNotes.h"
#include "settings/forms/FormSelectDriveModel.h"
#include "settings/forms/FormViewParameters.h"
#include "shell/FormColorSettings.h"
#include "shell/FormGettingStarted.h"
#include "shell/ShellFixture.h"
#include "wizards/WizardDriver.h"
#include "wizards/basic/FormWizardBasic.h"
#include "wizards/io/FormWizardIO.h"

#include <QDirIterator>
#include <QLabel>
#include <QRegularExpression>
#include <functional>
#include <memory>

namespace quorvik::testing
{

namespace
{

QString FileText(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << "there is no " << qPrintable(path);
    return QString::fromUtf8(file.readAll());
}

QString TopicText(const QString &topic)
{
    return FileText(QStringLiteral(QUORVIK_HELP_SOURCE "/topics/") +
                    QString(topic).replace(QStringLiteral(".htm"), QStringLiteral(".md")));
}

class WindowTopics : public ::testing::Test
{
protected:
    /** Presses F1 and expects the one topic that shows the window's own picture. */
    void ExpectHelp(QWidget &window, const QString &picture)
    {
        SCOPED_TRACE(qPrintable(picture));
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        desk.help.Topics.clear();
        const QPointer<QWidget> focus = window.focusWidget();
        QTest::keyClick(focus ? focus.data() : &window, Qt::Key_F1);
        ASSERT_EQ(desk.help.Topics.size(), 1);
        EXPECT_TRUE(TopicText(desk.help.Topics.first()).contains(QStringLiteral("(picture:%1)").arg(picture)))
            << qPrintable(desk.help.Topics.first());
    }
    void ExpectHelp(QWidget &window) { ExpectHelp(window, window.objectName()); }

    TestDesk desk;
};

/** Numbers of the parameters that a topic has rows for. */
QSet<int> RowsOf(const QString &topic)
{
    static const QRegularExpression form(QStringLiteral("^@(\\d+)(?:\\.\\.(\\d+))? "),
                                         QRegularExpression::MultilineOption);
    QSet<int> numbers;
    QRegularExpressionMatchIterator rows = form.globalMatch(TopicText(topic));
    while (rows.hasNext()) {
        const QRegularExpressionMatch row = rows.next();
        const int first = row.captured(1).toInt();
        for (int p = first; p <= std::max(first, row.captured(2).toInt()); ++p)
            numbers.insert(p);
    }
    return numbers;
}

} // namespace

TEST_F(WindowTopics, EveryBlockHasItsOwnThatExplainsEveryRow)
{
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        for (int member = std::max(entry.firstMember, 0);
             entry.make && member <= std::max(entry.lastMember, 0); ++member) {
            const std::unique_ptr<BlockForm> form(entry.make(desk.desk, member));
            ExpectHelp(*form);
            // The user's own choice of rows has no place in a topic.
            if (QLatin1String(entry.form) == QLatin1String("FormCustom"))
                continue;
            const QSet<int> explained = RowsOf(form->HelpTopic());
            const auto rowParam = [&form](int row) {
                return form->findChild<QLabel *>(ControlName("Label1", row))->property("Tag").toInt();
            };
            const int linked = desk.model.Value(rowParam(0));
            for (int row = 0; row < form->RowCount(); ++row)
                EXPECT_TRUE(explained.contains(rowParam(row)) || (row > 0 && rowParam(row) == linked))
                    << entry.form << " row " << row << ", parameter " << rowParam(row);
        }
    }
}

TEST_F(WindowTopics, EveryOtherWindowHasItsOwn)
{
    DriveLink link(desk.model, desk.rules, desk.asker);
    FilePrint print(desk.desk);
    VirtualOperatorFields fields;
    FormVirtualOperator panel(desk.desk, &desk.mainWindow, fields);
    desk.model.EditParamNumber = 217;
    const std::function<QWidget *()> windows[] = {
        [&] { return new FormCommunications(desk.desk, &desk.mainWindow, link); },
        [&] { return new FormSelectCommMode(desk.desk, &desk.mainWindow); },
        [&] { return new FormProgressBar(desk.desk, &desk.mainWindow, link); },
        [&] { return new FormSelectDriveModel(desk.desk, &desk.mainWindow); },
        [&] { return new FormModifyParameterValue(desk.desk, &desk.mainWindow); },
        [&] { return new FormNotes(desk.desk, &desk.mainWindow); },
        [&] { return new FormViewParameters(desk.desk, print, ReportFilter::All); },
        [&] { return new FormIOSimulator(desk.desk); },
        [&] { return new FormColorSettings(desk.desk); },
        [&] { return new FormGettingStarted(desk.desk, &desk.mainWindow, true); },
        [&] { return new FormVirtualOperatorSetup(desk.desk, panel, 0); },
    };
    link.ScanKind = 1;
    for (const auto &make : windows)
        ExpectHelp(*std::unique_ptr<QWidget>(make()));
    ExpectHelp(panel);
}

class MentorTopics : public WindowTopics
{
protected:
    void Fill(QWidget &mentor, const char *name, std::initializer_list<const char *> texts)
    {
        int index = 0;
        for (const char *text : texts)
            mentor.findChild<QLineEdit *>(ControlName(name, index++))->setText(QString::fromLatin1(text));
    }

    /** Walks to the last page and presses F1 on each. @return the pages seen. */
    QSet<int> Walk(WizardForm &mentor)
    {
        QSet<int> seen;
        do {
            seen.insert(mentor.CurrentStep());
            ExpectHelp(mentor, ControlName(qPrintable(mentor.objectName()), mentor.CurrentStep()));
            if (mentor.CurrentStep() < WizardForm::LastStep)
                mentor.findChild<QAbstractButton *>(QStringLiteral("CmdNav(3)"))->click();
        } while (!seen.contains(mentor.CurrentStep()));
        EXPECT_TRUE(seen.contains(WizardForm::LastStep)) << "stuck on page " << mentor.CurrentStep();
        return seen;
    }
};

TEST_F(MentorTopics, EveryPageOfTheBasicSetupHasItsOwn)
{
    FormWizardBasic mentor(desk.desk, nullptr);
    Fill(mentor, "TextMotorData", {"150", "500", "1750", "4.00"});
    EXPECT_EQ(Walk(mentor).size(), WizardForm::LastStep + 1);
}

TEST_F(MentorTopics, EveryPageOfTheInputsAndOutputsHasItsOwn)
{
    FormWizardIO inputs(desk.desk, nullptr);
    Fill(inputs, "TextCal", {"0", "4095"});
    Fill(inputs, "TextBiasGain", {"0.00", "100.00"});
    QSet<int> seen = Walk(inputs);
    desk.model.WizardIOStart = {.outputs = 1};
    FormWizardIO outputs(desk.desk, nullptr);
    Fill(outputs, "TextOutputBiasGain", {"0.00", "10.00"});
    seen += Walk(outputs);
    EXPECT_EQ(seen.size(), WizardForm::LastStep + 1);
}

TEST(MessageTopic, QuotesWhatTheProgramSays)
{
    QString source;
    QDirIterator files(QStringLiteral(QUORVIK_HELP_SOURCE "/../src"), {QStringLiteral("*.cpp")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        source += FileText(files.next());
    // A literal may run over several lines of the code, and its text over several lines of the box.
    source.remove(QRegularExpression(QStringLiteral(R"("\s*\n\s*")")));
    source.replace(QRegularExpression(QStringLiteral(R"(\\[rn])")), QStringLiteral(" "));
    source = source.remove(u'\\').simplified();
    static const QRegularExpression row(QStringLiteral(R"(^\| (?!Message)((?:[^|\\]|\\.)+) \|)"),
                                        QRegularExpression::MultilineOption);
    static const QRegularExpression gap(QStringLiteral(R"(\.\.\.|(?<=[.!?]) )"));
    QRegularExpressionMatchIterator rows = row.globalMatch(TopicText(QStringLiteral("Troubleshooting.htm")));
    EXPECT_TRUE(rows.hasNext());
    while (rows.hasNext())
        for (const QString &piece : rows.next().captured(1).remove(u'\\').split(gap))
            EXPECT_TRUE(source.contains(piece.trimmed())) << qPrintable(piece);
}

using MainWindowTopics = ShellTest;

TEST_F(MainWindowTopics, F1GoesToTheChildInFrontAndElseToTheContents)
{
    LoadQuietly();
    main->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(main.get()));
    QTest::keyClick(main.get(), Qt::Key_F1);
    EXPECT_EQ(help.Topics, QStringList{QStringLiteral("<contents>")});

    Trigger("mnuBlockVloop");
    auto *block = Find("FormVelocityLoop");
    ASSERT_NE(block, nullptr);
    auto *box = block->findChild<QWidget *>(QStringLiteral("Text1(0)"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_F1);
    EXPECT_EQ(help.Topics.mid(1), QStringList{QStringLiteral("Velocity Loop.htm")});

    Trigger("mnuHelpSarvexManual");
    EXPECT_TRUE(TopicText(help.Topics.last()).contains(QStringLiteral("{{parameters}}")));
}

} // namespace quorvik::testing
