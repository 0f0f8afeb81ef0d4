#include "desktop/BoxColors.h"
#include "desktop/DesktopAsker.h"
#include "desktop/Form.h"
#include "desktop/LongestText.h"
#include "desktop/PlainText.h"
#include "desktop/TypeToChoose.h"
#include "desktop/ValueBox.h"
#include "model/Model.h"
#include "support/Controls.h"
#include "support/TestDesk.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QListView>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <algorithm>

namespace quorvik::testing
{

namespace
{

/** Runs on the modal window that opens next. */
template<typename Window> void OnNextModal(std::function<void(Window &)> act)
{
    auto *timer = new QTimer(qApp);
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act)] {
        auto *window = qobject_cast<Window *>(QApplication::activeModalWidget());
        if (!window)
            return;
        timer->stop();
        timer->deleteLater();
        act(*window);
    });
    timer->start();
}

class CountingForm : public Form
{
public:
    CountingForm(Desk &desk, int &unloads)
        : Form(desk, QStringLiteral("FormCounting"), QStringLiteral("Counting"), QString())
        , unloads_(unloads)
    {
    }

protected:
    void Unload() override { ++unloads_; }

private:
    int &unloads_;
};

TEST(Form, LeavesOnceHoweverOftenItIsClosed)
{
    TestDesk desk;
    int unloads = 0;
    const QPointer<Form> form = new CountingForm(desk.desk, unloads);
    form->show();
    ASSERT_EQ(desk.forms.FindOpenBlock(QStringLiteral("Counting")), 1);
    form->close();
    QCloseEvent again;
    QCoreApplication::sendEvent(form, &again);
    EXPECT_EQ(unloads, 1);
    EXPECT_EQ(desk.forms.Count(), 1) << "a window that waits for its deletion is no open one";
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.isNull(); }));
}

TEST(BoxColors, TextIsWhicheverContrastsMore)
{
    EXPECT_EQ(ColorOf(0x0000FF), QColor(Qt::red)) << "blue is the high byte";
    EXPECT_EQ(BlueGreenRed(ColorOf(0x123456)), 0x123456);
    EXPECT_EQ(ContrastingText(Qt::black), QColor(Qt::white));
    EXPECT_EQ(ContrastingText(Qt::blue), QColor(Qt::white));
    EXPECT_EQ(ContrastingText(Qt::green), QColor(Qt::black));
    EXPECT_EQ(ContrastingText(Qt::white), QColor(Qt::black));
}

TEST(ValueBox, ClickEnterAndSpaceAreOneAndTypingNothing)
{
    ValueBox box(QStringLiteral("Text1(0)"), nullptr);
    box.SetText(QStringLiteral("12.5 %"));
    box.show();
    const QSignalSpy clicks(&box, &ValueBox::clicked);
    QTest::mouseClick(&box, Qt::LeftButton);
    QTest::keyClick(&box, Qt::Key_Return);
    QTest::keyClick(&box, Qt::Key_Enter);
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 4);
    QTest::keyClicks(&box, QStringLiteral("7"));
    EXPECT_EQ(clicks.count(), 4);
    EXPECT_EQ(box.text(), QStringLiteral("12.5 %"));
}

TEST(TypeToChoose, TakesTheWholeNumberOrNothing)
{
    const std::pair<const char *, const char *> cases[] = {{"22", "22 c"},   {"2", "2 a"},    {"21", "217 d"},
                                                           {"217", "217 d"}, {"218", "20 b"}, {"x", "20 b"}};
    for (const auto &[typed, chosen] : cases) {
        QComboBox list;
        TypeToChoose(&list);
        list.addItems({Name("2 a"), Name("20 b"), Name("22 c"), Name("217 d")});
        list.setCurrentIndex(1);
        QTest::keyClicks(&list, Name(typed));
        EXPECT_EQ(list.currentText(), Name(chosen)) << typed;
    }
}

TEST(PlainText, MarkupInAToolTipStandsAsText)
{
    QWidget widget;
    SetPlainToolTip(&widget, QStringLiteral("(226) Fwd Accel A"));
    EXPECT_EQ(widget.toolTip(), QStringLiteral("(226) Fwd Accel A"));
    SetPlainToolTip(&widget, QStringLiteral("<b>Gain</b>"));
    EXPECT_TRUE(widget.toolTip().contains(QStringLiteral("&lt;b&gt;Gain")));
}

TEST(LongestText, LooksAtLimitsListsAndFactoryLimits)
{
    TestDesk desk;
    desk.model.ParamTable[191].Min = -15000;
    desk.model.ParamTable[191].Max = 0;
    EXPECT_EQ(LongestValueText(desk.model, 191), QStringLiteral("-150.00 %"));
    EXPECT_EQ(LongestValueText(desk.model, 28), QStringLiteral("Unipolar"));
    EXPECT_EQ(LongestValueText(desk.model, Param::DriveModel).size(), 10);
    desk.model.ParamTable[189].Max = 7;
    desk.model.ParamTable[189].Min = 0;
    EXPECT_GE(LongestValueText(desk.model, 189).size(), QStringLiteral("100.00 %").size());
}

TEST(DesktopAsker, ABoxShowsPlainTextAndGivesItsAnswer)
{
    DesktopAsker asker;
    QMainWindow main;
    main.setAttribute(Qt::WA_ShowWithoutActivating);
    main.show();
    const QString text = QStringLiteral("<b>x</b> has been modified.\r\n\r\nSave changes?");
    OnNextModal<QMessageBox>([&](QMessageBox &box) {
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.text(), text);
        EXPECT_EQ(box.icon(), QMessageBox::Question);
        EXPECT_EQ(box.standardButton(box.defaultButton()), QMessageBox::Yes);
        EXPECT_EQ(box.parentWidget(), &main) << "with another program in front";
        box.button(QMessageBox::No)->click();
    });
    EXPECT_EQ(asker.MsgBox(text, MsgButtons::YesNoCancel, MsgIcon::Question, {}), MsgAnswer::No);
    OnNextModal<QMessageBox>([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(asker.MsgBox(text, MsgButtons::YesNoCancel, MsgIcon::None, {}), MsgAnswer::Cancel);
}

TEST(DesktopAsker, ABoxBreaksNoLineTwice)
{
    const QString line =
        QStringLiteral("required (simulating a lower rated tachometer). Change the Tachometer");
    OnNextModal<QMessageBox>([&](QMessageBox &box) {
        const auto *label = FindIn<QLabel>(&box, "qt_msgbox_label");
        EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(line));
        box.accept();
    });
    DesktopAsker().MsgBox(line + QStringLiteral("\r\nRating."), MsgButtons::Ok, MsgIcon::Critical, {});
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
    const auto tell = [&](const char *text, const char *title) {
        asker.Tell(QString::fromLatin1(text), MsgIcon::Exclamation, QString::fromLatin1(title));
    };
    tell("<b>first", "Write Error");
    tell("second", "Write Error");
    tell("second", "Write Error");
    ASSERT_EQ(boxes().size(), 1);
    QMessageBox *box = boxes().first();
    EXPECT_EQ(box->text(), QStringLiteral("<b>first\r\n\r\nsecond"));
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(box->frameGeometry().intersects(panel.frameGeometry()));
    tell("other", "Communications Error");
    EXPECT_EQ(boxes().size(), 2);
    QTest::keyClick(box, Qt::Key_Return);
    tell("third", "Write Error");
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_TRUE(std::ranges::any_of(boxes(), [](auto *b) { return b->text() == QStringLiteral("third"); }));

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
    OnNextModal<QFileDialog>([](QFileDialog &dialog) {
        const auto *list = FindIn<QListView>(&dialog, "listView");
        EXPECT_TRUE(QTest::qWaitFor([list] { return list->model()->rowCount(list->rootIndex()) == 3; }));
        dialog.reject();
    });
    EXPECT_EQ(asker.ShowOpen({QStringLiteral("Open"), folder.path(), QString()}), std::nullopt);
    OnNextModal<QFileDialog>([](QFileDialog &dialog) {
        const auto *kinds = FindIn<QComboBox>(&dialog, "fileTypeCombo");
        EXPECT_EQ(kinds->itemText(0), Name("All Files (*.*)"));
        EXPECT_EQ(kinds->currentText(), Name("Svx Parameter Files (*.Svx)"));
        dialog.findChild<QLineEdit *>()->setText(QStringLiteral("mill"));
        QMetaObject::invokeMethod(&dialog, &QDialog::accept);
    });
    EXPECT_EQ(asker.ShowSave({QStringLiteral("Save As"), folder.path(), QString()}),
              folder.filePath(QStringLiteral("mill.Svx")));
}

} // namespace

} // namespace quorvik::testing
