#pragma once

#include "link/DriveLink.h"
#include "support/WindowTest.h"
#include "wizards/PlanTesting.h"
#include "wizards/frame/WizardForm.h"

#include <QTableWidget>

namespace quorvik::testing
{

/** What an entry that is no number is refused with. */
inline QString NoNumber(const char *what)
{
    return QStringLiteral("Please enter a numerical value for the %1.").arg(Name(what));
}
/** The same for one outside its range, which may be that of the factory's drive model. */
inline QString OutOfRange(const char *what, const char *min, const char *max, bool ofModel = false)
{
    return QStringLiteral("The valid %1 range%4 is:\r\n  Min: %2\r\n  Max: %3")
        .arg(Name(what), Name(min), Name(max), Name(ofModel ? " for model SVR100-000" : ""));
}

/** A Mentor on the screen, driven by clicks and keys on the controls' names. */
template<typename Mentor> class WizardDriver : public WindowTest
{
protected:
    /** Puts up a window afresh; the table stays as the last one left it. */
    void Open()
    {
        delete window.data();
        asOpened = Snapshot(desk.table);
        form = Show<Mentor>(nullptr);
        form->Follow(link);
    }

    void Next() const { Click("CmdNav(3)"); }
    void Finish() const { Click("CmdNav(4)"); }

    /** Goes to a page with Next or Back, whichever way it lies. */
    void GoTo(int step) const
    {
        for (int i = 0; i < WizardForm::LastStep + 2 && form->CurrentStep() != step; ++i)
            Click(form->CurrentStep() < step ? "CmdNav(3)" : "CmdNav(2)");
        ASSERT_EQ(form->CurrentStep(), step);
    }

    /** A row of the list of what Finish will write. */
    std::string Planned(int row) const
    {
        QStringList cells;
        for (int column = 0; column < 4; ++column)
            cells << Find<QTableWidget>("TableWrites")->item(row, column)->text();
        return cells.join(QStringLiteral(" | ")).toStdString();
    }

    /** Next on this page is refused with exactly this box, and the focus goes there ("" for no text box). */
    void ExpectRefusal(const Name &text, const Name &focus, MsgIcon icon = MsgIcon::Exclamation,
                       const Name &title = "Quorvik Mentor")
    {
        const int step = form->CurrentStep();
        desk.asker.Expect(text);
        Next();
        ASSERT_FALSE(desk.asker.Shown.isEmpty());
        const ShownBox box = desk.asker.Shown.takeLast();
        EXPECT_EQ(box.text, text);
        EXPECT_EQ(box.title, title);
        EXPECT_EQ(box.icon, icon);
        EXPECT_EQ(form->CurrentStep(), step);
        const QWidget *focused = QApplication::focusWidget();
        EXPECT_TRUE(focus.isEmpty() || (focused && focused->objectName() == focus)) << text.toStdString();
    }

    /**
     * No caption of the page is cut, no control is smaller than it needs to be, the window fits the screen of
     * a laptop at 150 per cent, and leaving the Mentor here writes nothing.
     */
    void ExpectWholePageAndCancel(bool byEscape)
    {
        SCOPED_TRACE(form->CurrentStep());
        // At the smallest size that the user can make it.
        form->resize(1, 1);
        QTest::qWait(0);
        for (const QWidget *widget : form->template findChildren<QWidget *>())
            if (widget->isVisible() && !widget->objectName().isEmpty())
                ExpectWhole(widget);
        EXPECT_LE(form->width() * 1.5, 1366);
        EXPECT_LE(form->height() * 1.5, 768 - 40);
        if (byEscape)
            Press(Qt::Key_Escape);
        else
            Click("CmdNav(1)");
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(Snapshot(desk.table), asOpened);
    }

    /** Walks with Next along the steps and back again with Back. */
    void ExpectWalk(const std::vector<int> &steps)
    {
        const auto walk = [this](const char *button, int lastStep) {
            std::vector<int> seen{form->CurrentStep()};
            while (seen.back() != lastStep && seen.size() <= WizardForm::LastStep) {
                Click(button);
                seen.push_back(form->CurrentStep());
            }
            return seen;
        };
        EXPECT_EQ(walk("CmdNav(3)", steps.back()), steps);
        EXPECT_EQ(walk("CmdNav(2)", 0), std::vector<int>(steps.rbegin(), steps.rend()));
    }

    DriveLink link{desk.table}; ///< never opened: what it announces is emitted here
    Mentor *form = nullptr;
    std::vector<std::vector<std::int32_t>> asOpened;

private:
    static void ExpectWhole(const QWidget *widget)
    {
        const auto *label = qobject_cast<const QLabel *>(widget);
        const auto *box = qobject_cast<const QLineEdit *>(widget);
        SCOPED_TRACE(widget->objectName().toStdString());
        if (label != nullptr && label->wordWrap()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        } else if (label != nullptr || widget->inherits("QAbstractButton")) {
            EXPECT_GE(widget->width(), widget->sizeHint().width());
            EXPECT_GE(widget->height(), widget->sizeHint().height());
        } else if (box != nullptr && box->maxLength() < 100) {
            EXPECT_GT(box->width(), box->fontMetrics().horizontalAdvance(QString(box->maxLength(), u'0')));
        }
    }
};

} // namespace quorvik::testing
