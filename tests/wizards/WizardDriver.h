#pragma once

#include "support/TestDesk.h"
#include "wizards/PlanTesting.h"
#include "wizards/frame/WizardForm.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

namespace quorvik::testing
{

/** A Mentor on the screen, driven by clicks and keys on the controls' names. */
template<typename Window> class WizardDriver
{
public:
    /** Puts up a window afresh; the table stays as the last one left it. */
    void Open()
    {
        form = std::make_unique<Window>(desk.desk, nullptr);
        form->show();
        QApplication::setActiveWindow(form.get());
        ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    }

    template<typename Control> Control *Find(const QString &name)
    {
        auto *control = form->template findChild<Control *>(name);
        EXPECT_NE(control, nullptr) << name.toStdString();
        return control;
    }

    void Click(const QString &name)
    {
        auto *button = Find<QAbstractButton>(name);
        EXPECT_TRUE(button->isVisible()) << name.toStdString();
        EXPECT_TRUE(button->isEnabled()) << name.toStdString();
        // A radio button reacts on its indicator and caption only.
        const QPoint place(button->inherits("QPushButton") ? button->width() / 2 : 10, button->height() / 2);
        QTest::mouseClick(button, Qt::LeftButton, {}, place);
    }

    void Type(const QString &name, const QString &text)
    {
        auto *box = Find<QLineEdit>(name);
        EXPECT_TRUE(box->isVisible() && box->isEnabled()) << name.toStdString();
        box->setFocus();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Delete);
        QTest::keyClicks(box, text);
    }

    void Pick(const QString &name, int index) { Find<QComboBox>(name)->setCurrentIndex(index); }

    void Next() { Click(QStringLiteral("CmdNav(3)")); }
    void Back() { Click(QStringLiteral("CmdNav(2)")); }
    void Finish() { Click(QStringLiteral("CmdNav(4)")); }

    void NextUntil(int step)
    {
        for (int i = 0; i < 12 && form->CurrentStep() != step; ++i)
            Next();
        ASSERT_EQ(form->CurrentStep(), step);
    }

    QString Text(const QString &name) { return Find<QLineEdit>(name)->text(); }
    QString Caption(const QString &name) { return Find<QLabel>(name)->text(); }
    QString Focus() const
    {
        const QWidget *widget = QApplication::focusWidget();
        return widget == nullptr ? QString() : widget->objectName();
    }

    /** Next on this page is refused with exactly this box, and the focus goes there ("" for no text box). */
    void ExpectRefusal(const QString &text, const QString &focus, MsgIcon icon = MsgIcon::Exclamation,
                       const QString &title = QStringLiteral("Quorvik Mentor"))
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
        if (!focus.isEmpty()) {
            EXPECT_EQ(Focus(), focus) << text.toStdString();
        }
    }

    /** No caption of the page is cut, no control is smaller than it needs to be, and the window fits the
     * screen of a laptop at 150 per cent. */
    void ExpectNothingCut()
    {
        // At the smallest size that the user can make it.
        form->resize(1, 1);
        QTest::qWait(0);
        for (const QWidget *widget : form->template findChildren<QWidget *>()) {
            if (!widget->isVisible() || widget->objectName().isEmpty())
                continue;
            const auto *label = qobject_cast<const QLabel *>(widget);
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            const auto *box = qobject_cast<const QLineEdit *>(widget);
            const std::string name = NameOf(widget) + " on page " + std::to_string(form->CurrentStep());
            if (label != nullptr && label->wordWrap()) {
                EXPECT_GE(label->height(), label->heightForWidth(label->width())) << name;
            } else if (label != nullptr || button != nullptr) {
                EXPECT_GE(widget->width(), widget->sizeHint().width()) << name;
                EXPECT_GE(widget->height(), widget->sizeHint().height()) << name;
            } else if (box != nullptr && box->maxLength() < 100) {
                const int longest = box->fontMetrics().horizontalAdvance(QString(box->maxLength(), u'0'));
                EXPECT_GT(box->width(), longest) << name;
            }
        }
        EXPECT_LE(form->width() * 1.5, 1366);
        EXPECT_LE(form->height() * 1.5, 768 - 40);
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
            Back();
            back.push_back(form->CurrentStep());
        }
        EXPECT_EQ(back, std::vector<int>(steps.rbegin(), steps.rend()));
    }

    static std::string NameOf(const QWidget *widget) { return widget->objectName().toStdString(); }

    TestDesk desk;
    std::unique_ptr<Window> form;
};

/** The name of a control, as QString. */
inline QString N(const char *name)
{
    return QString::fromLatin1(name);
}

} // namespace quorvik::testing
