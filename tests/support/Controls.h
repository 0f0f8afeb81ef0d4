#pragma once

#include <QLineEdit>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

namespace quorvik::testing
{

/** The name of a control or a text in one, as a literal or put together. */
struct Name : QString {
    Name(const char *latin1)
        : QString(QString::fromLatin1(latin1))
    {
    }
    Name(const QString &text)
        : QString(text)
    {
    }
};

/** The control of that name in a window; a test that looks for one that is not there fails. */
template<typename Control = QWidget> Control *FindIn(const QWidget *window, const Name &name)
{
    auto *control = window->findChild<Control *>(name);
    EXPECT_NE(control, nullptr) << name.toStdString();
    return control;
}

inline void ClickIn(const QWidget *window, const Name &name)
{
    QTest::mouseClick(FindIn(window, name), Qt::LeftButton);
}

/** Replaces what stands in a text box by typing. */
inline void TypeIn(const QWidget *window, const Name &name, const Name &text)
{
    auto *box = FindIn<QLineEdit>(window, name);
    EXPECT_TRUE(box->isVisible() && box->isEnabled()) << name.toStdString();
    box->setFocus();
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, text);
}

} // namespace quorvik::testing
