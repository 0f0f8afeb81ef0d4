#pragma once

#include "link/DriveLink.h"
#include "support/Controls.h"
#include "support/TestDesk.h"
#include "wizards/PlanTesting.h"
#include "wizards/frame/WizardForm.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <memory>

namespace quorvik::testing
{

/** A Mentor on the screen, driven by clicks and keys on the controls' names. */
template<typename Window> class WizardDriver
{
public:
    WizardDriver()
    {
        desk.model.PortOpen = [this] { return desk.online; };
    }

    /** Puts up a window afresh; the table stays as the last one left it. */
    void Open()
    {
        form.reset();
        asOpened = Snapshot(desk.model);
        form = std::make_unique<Window>(desk.desk, nullptr);
        form->Follow(link);
        form->show();
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    }

    template<typename Control = QWidget> Control *Find(const Name &name) const
    {
        return FindIn<Control>(form.get(), name);
    }

    void Click(const Name &name)
    {
        auto *button = Find<QAbstractButton>(name);
        EXPECT_TRUE(button->isVisible() && button->isEnabled()) << name.toStdString();
        // A radio button reacts on its indicator and caption only.
        const QPoint place(button->inherits("QPushButton") ? button->width() / 2 : 10, button->height() / 2);
        QTest::mouseClick(button, Qt::LeftButton, {}, place);
    }

    void Type(const Name &name, const Name &text) { TypeIn(form.get(), name, text); }
    void Pick(const Name &name, int index) { Find<QComboBox>(name)->setCurrentIndex(index); }
    void Press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), modifiers);
    }

    void Next() { Click("CmdNav(3)"); }
    void Finish() { Click("CmdNav(4)"); }

    /** Goes to a page with Next or Back, whichever way it lies. */
    void GoTo(int step)
    {
        for (int i = 0; i < WizardForm::LastStep + 2 && form->CurrentStep() != step; ++i)
            Click(form->CurrentStep() < step ? "CmdNav(3)" : "CmdNav(2)");
        ASSERT_EQ(form->CurrentStep(), step);
    }

    std::string Text(const Name &name) const { return Find<QLineEdit>(name)->text().toStdString(); }
    std::string Caption(const Name &name) const { return Find<QLabel>(name)->text().toStdString(); }
    bool Enabled(const Name &name) const { return Find(name)->isEnabled(); }
    bool Visible(const Name &name) const { return Find(name)->isVisible(); }
    bool Checked(const Name &name) const { return Find<QAbstractButton>(name)->isChecked(); }

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
     * a laptop at 150 per cent, the buttons lead where they can, and leaving the Mentor here writes nothing.
     */
    void ExpectWholePageAndCancel(bool byEscape)
    {
        const int step = form->CurrentStep();
        SCOPED_TRACE(step);
        // At the smallest size that the user can make it.
        form->resize(1, 1);
        QTest::qWait(0);
        for (const QWidget *widget : form->template findChildren<QWidget *>())
            if (widget->isVisible() && !widget->objectName().isEmpty())
                ExpectWhole(widget);
        EXPECT_LE(form->width() * 1.5, 1366);
        EXPECT_LE(form->height() * 1.5, 768 - 40);
        EXPECT_EQ(Enabled("CmdNav(2)"), step > 0);
        EXPECT_EQ(Enabled("CmdNav(3)"), step < WizardForm::LastStep);
        EXPECT_EQ(Enabled("CmdNav(4)"), step == WizardForm::LastStep);
        if (byEscape)
            Press(Qt::Key_Escape);
        else
            Click("CmdNav(1)");
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(Snapshot(desk.model), asOpened);
    }

    /** Walks with Next along the steps and back again with Back. */
    void ExpectWalk(const std::vector<int> &steps)
    {
        std::vector<int> there{form->CurrentStep()};
        while (there.size() < steps.size() && form->CurrentStep() < WizardForm::LastStep) {
            Next();
            there.push_back(form->CurrentStep());
        }
        EXPECT_EQ(there, steps);
        std::vector<int> back{form->CurrentStep()};
        while (form->CurrentStep() > 0) {
            Click("CmdNav(2)");
            back.push_back(form->CurrentStep());
        }
        EXPECT_EQ(back, std::vector<int>(steps.rbegin(), steps.rend()));
    }

    TestDesk desk;
    DriveLink link{desk.model, desk.rules, desk.asker}; ///< never opened: what it announces is emitted here
    std::unique_ptr<Window> form;
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
