#include "desktop/BoxColors.h"
#include "desktop/DesktopAsker.h"
#include "desktop/LongestText.h"
#include "desktop/PlainText.h"
#include "desktop/TypeToChoose.h"
#include "desktop/ValueBox.h"
#include "model/ParameterTable.h"
#include "support/Controls.h"
#include "support/TestDesk.h"

#include <QFile>
#include <QListView>
#include <QMainWindow>
#include <QMessageBox>
#include <algorithm>
#include <random>

namespace quorvik::testing
{

TEST(BoxColors, TextIsWhicheverContrastsMore)
{
    EXPECT_EQ(ContrastingText(Qt::blue), QColor(Qt::white));
    EXPECT_EQ(ContrastingText(Qt::green), QColor(Qt::black));
}

TEST(BoxColors, FaintTextStaysReadableOnWhateverTheUserChooses)
{
    EXPECT_NEAR(Contrast(Qt::white, Qt::black), 21, 1e-9);
    EXPECT_EQ(FaintText(Qt::black), Mixed(Qt::white, Qt::black, 0.5));
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    const auto defaults = AccessColors{}.DefaultColors;
    std::vector<std::int32_t> colors(defaults.begin(), defaults.end());
    std::generate_n(std::back_inserter(colors), 1000, [&] { return std::int32_t(random() & 0xFFFFFF); });
    for (const std::int32_t color : colors) {
        const QColor body = ColorOf(color);
        EXPECT_GE(Contrast(FaintText(body), body), LeastContrast) << color << ", seed " << seed;
    }
}

// Set looks as Live does, and Lost as Old.
TEST(ValueBox, EachOtherStateAddsAMarkAndLeavesTheColour)
{
    for (const std::int32_t color : AccessColors{}.DefaultColors) {
        QList<QImage> pictures;
        for (int state = 0; state <= int(ValueState::Lost); ++state) {
            ValueBox box(QString(), nullptr);
            box.SetBackColor(ColorOf(color));
            box.SetText(Name("12.00 %"));
            box.SetState(ValueState(state));
            box.resize(box.sizeHint() * 2);
            const QImage picture = box.grab().toImage();
            EXPECT_EQ(picture.pixelColor(box.rect().center()), ColorOf(color)) << state;
            EXPECT_EQ(pictures.contains(picture),
                      ValueState(state) == ValueState::Set || ValueState(state) == ValueState::Lost)
                << state << ' ' << color;
            pictures.append(picture);
        }
    }
}

TEST(TypeToChoose, TakesTheWholeNumberOrNothing)
{
    const std::pair<const char *, const char *> cases[] = {{"22", "22 Ccb"}, {"2", "2 a"},    {"21", "217 d"},
                                                           {"217", "217 d"}, {"218", "20 b"}, {"x", "20 b"},
                                                           {"cc", "22 Ccb"}, {"C", "22 Ccb"}};
    for (const auto &[typed, chosen] : cases) {
        QComboBox list;
        TypeToChoose(&list);
        list.addItems({Name("2 a"), Name("20 b"), Name("22 Ccb"), Name("217 d")});
        list.setCurrentIndex(1);
        QTest::keyClicks(&list, Name(typed));
        EXPECT_EQ(list.currentText(), Name(chosen)) << typed;
    }
}

TEST(PlainText, MarkupInAToolTipStandsAsText)
{
    QWidget widget;
    SetPlainToolTip(&widget, Name("(226) Fwd Accel A"));
    EXPECT_EQ(widget.toolTip(), Name("(226) Fwd Accel A"));
    SetPlainToolTip(&widget, Name("<b>Gain</b>"));
    EXPECT_TRUE(widget.toolTip().contains(Name("&lt;b&gt;Gain")));
    EXPECT_EQ(WithSecondLine(Name("Read Only"), Name("<b>")), Name("Read Only\n<b>"));
    EXPECT_TRUE(WithSecondLine(widget.toolTip(), Name("<b>")).endsWith(Name("<br>&lt;b&gt;")));
}

TEST(LongestText, LooksAtLimitsListsAndFactoryLimits)
{
    TestDesk desk;
    desk.table.Row(191).Min = -15000;
    desk.table.Row(191).Max = 0;
    EXPECT_EQ(LongestValueText(desk.table, 191), Name("-150.00 %"));
    EXPECT_EQ(LongestValueText(desk.table, 28), Name("Unipolar"));
    EXPECT_EQ(LongestValueText(desk.table, Param::DriveModel).size(), 10);
    desk.table.Row(189).Max = 7;
    desk.table.Row(189).Min = 0;
    EXPECT_GE(LongestValueText(desk.table, 189).size(), Name("100.00 %").size());
}

TEST(DesktopAsker, ABoxShowsPlainTextAndGivesItsAnswer)
{
    DesktopAsker asker;
    QMainWindow main;
    main.setAttribute(Qt::WA_ShowWithoutActivating);
    main.show();
    const QString text = Name("<b>x</b> has been modified.\r\n\r\nSave changes?");
    const auto ask = [&](MsgIcon icon, MsgAnswer expected) {
        EXPECT_EQ(asker.MsgBox(text, MsgButtons::YesNoCancel, icon, {}), expected);
    };
    InModal<QMessageBox>([&] { ask(MsgIcon::Question, MsgAnswer::No); },
                         [&](QMessageBox *box) {
                             EXPECT_EQ(box->textFormat(), Qt::PlainText);
                             EXPECT_EQ(box->text(), text);
                             EXPECT_EQ(box->icon(), QMessageBox::Question);
                             EXPECT_EQ(box->standardButton(box->defaultButton()), QMessageBox::Yes);
                             EXPECT_EQ(box->parentWidget(), &main) << "with another program in front";
                             box->button(QMessageBox::No)->click();
                         });
    InModal([&] { ask(MsgIcon::None, MsgAnswer::Cancel); },
            [](QWidget *box) { QTest::keyClick(box, Qt::Key_Escape); });
}

TEST(DesktopAsker, AQuestionHasItsVerbsAndTheSafeOneIsTheDefault)
{
    const Choice other{MsgAnswer::Other, Name("&Compare...")};
    const std::tuple<std::vector<Choice>, Qt::Key, MsgAnswer> cases[] = {
        {{other, {MsgAnswer::No}, {MsgAnswer::Cancel}}, Qt::Key_Return, MsgAnswer::No},
        {{other, {MsgAnswer::No}, {MsgAnswer::Cancel}}, Qt::Key_Escape, MsgAnswer::Cancel},
        {{other, {MsgAnswer::No, Name("Send")}}, Qt::Key_Escape, MsgAnswer::No},
        {{other, {MsgAnswer::No}}, {}, MsgAnswer::Other},
    };
    for (const auto &[choices, key, answer] : cases)
        InModal<QMessageBox>(
            [&] {
                EXPECT_EQ(DesktopAsker().Ask({.text = Name("<b>?"),
                                              .title = {},
                                              .explanation = Name("!"),
                                              .choices = choices,
                                              .safe = MsgAnswer::No}),
                          answer);
            },
            [&](QMessageBox *box) {
                EXPECT_EQ(box->text(), Name("<b>?\r\n\r\n!"));
                EXPECT_EQ(box->textFormat(), Qt::PlainText);
                for (QAbstractButton *button : box->buttons())
                    if (key == Qt::Key() && button->text() == other.verb)
                        return button->click();
                QTest::keyClick(box, key);
            });
}

TEST(DesktopAsker, F1ShowsWhatTheHelpSaysToABox)
{
    RecordingHelp help;
    DesktopAsker asker(&help);
    const auto ask = [](QWidget *box) {
        box->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(box));
        QTest::keyClick(box, Qt::Key_F1);
        QTest::keyClick(box, Qt::Key_Escape);
    };
    InModal([&] { asker.MsgBox(Name("Told."), MsgButtons::Ok, MsgIcon::None, {}); }, ask);
    const Question question{.text = Name("Asked?"), .title = {}, .choices = {{MsgAnswer::No}}, .safe = {}};
    InModal([&] { asker.Ask(question); }, ask);
    asker.Tell(Name("Stands."), MsgIcon::None, {});
    for (QWidget *box : QApplication::topLevelWidgets())
        if (qobject_cast<QMessageBox *>(box) && box->isVisible())
            ask(box);
    EXPECT_EQ(help.Topics, (QStringList{Name("Told."), Name("Asked?"), Name("Stands.")}));
}

TEST(DesktopAsker, ABoxBreaksNoLineTwice)
{
    const QString line = Name("required (simulating a lower rated tachometer). Change the Tachometer");
    InModal([&] { DesktopAsker().MsgBox(line + Name("\r\nRating."), MsgButtons::Ok, MsgIcon::Critical, {}); },
            [&](const Controls &box) {
                const auto *label = box.Find<QLabel>("qt_msgbox_label");
                EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(line));
            });
}

TEST(DesktopAsker, AParagraphUnderAShortLineIsNotCut)
{
    InModal(
        [] {
            DesktopAsker().MsgBox(Name("Short.\r\n") + Name("word ").repeated(30), MsgButtons::Ok,
                                  MsgIcon::None, {});
        },
        [](const Controls &box) {
            const auto *label = box.Find<QLabel>("qt_msgbox_label");
            EXPECT_GE(label->height(), label->heightForWidth(label->width()));
            EXPECT_TRUE(label->wordWrap());
        });
}

TEST(DesktopAsker, AMessageStandsBesideTheWorkAndOnceOnly)
{
    DesktopAsker asker;
    QWidget panel;
    panel.setGeometry(300, 300, 300, 200);
    panel.show();
    const auto boxes = [] {
        QList<QMessageBox *> found;
        for (QWidget *window : QApplication::topLevelWidgets())
            if (auto *box = qobject_cast<QMessageBox *>(window); box && box->isVisible())
                found.append(box);
        return found;
    };
    const auto tell = [&](const Name &text, const Name &title) {
        asker.Tell(text, MsgIcon::Exclamation, title);
    };
    tell("<b>first", "Write Error");
    tell("second", "Write Error");
    tell("second", "Write Error");
    ASSERT_EQ(boxes().size(), 1);
    QMessageBox *box = boxes().first();
    EXPECT_EQ(box->text(), Name("<b>first\r\n\r\nsecond"));
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(box->frameGeometry().intersects(panel.frameGeometry()));
    tell("other", "Communications Error");
    EXPECT_EQ(boxes().size(), 2);
    QTest::keyClick(box, Qt::Key_Return);
    tell("third", "Write Error");
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_TRUE(std::ranges::any_of(boxes(), [](auto *b) { return b->text() == Name("third"); }));

    // Behind a dialog that holds the program it could not be answered.
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    tell("fourth", "Half Read");
    QTest::keyClick(boxes().last(), Qt::Key_Return);
    EXPECT_EQ(boxes().size(), 2);
}

TEST(DesktopAsker, TheFilterTakesEveryCaseOfLettersAndANameWithoutExtensionBecomesSvx)
{
    const QTemporaryDir folder;
    for (const char *name : {"a.svx", "b.SVX", "c.Svx", "d.txt"})
        EXPECT_TRUE(QFile(folder.filePath(Name(name))).open(QIODevice::WriteOnly));
    DesktopAsker asker;
    std::optional<QString> chosen;
    InModal(
        [&] {
            chosen = asker.ShowOpen({Name("Open"), folder.path(), {}});
        },
        [](const Controls &dialog) {
            const auto *list = dialog.Find<QListView>("listView");
            EXPECT_TRUE(QTest::qWaitFor([=] { return list->model()->rowCount(list->rootIndex()) == 3; }));
        });
    EXPECT_EQ(chosen, std::nullopt);
    InModal<QDialog>(
        [&] {
            chosen = asker.ShowSave({Name("Save As"), folder.path(), {}});
        },
        [](QDialog *dialog) {
            EXPECT_EQ(FindIn<QComboBox>(dialog, "fileTypeCombo")->itemText(0), Name("All Files (*.*)"));
            EXPECT_EQ(Controls(dialog).Text("fileTypeCombo"), "Svx Parameter Files (*.Svx)");
            dialog->findChild<QLineEdit *>()->setText(Name("mill"));
            dialog->accept();
        });
    EXPECT_EQ(chosen, folder.filePath(Name("mill.Svx")));
}

} // namespace quorvik::testing
