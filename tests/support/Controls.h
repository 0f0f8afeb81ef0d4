#pragma once

#include "desktop/Form.h"
#include "support/Name.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>
#include <utility>

namespace quorvik::testing
{

/** The control of that name in a window; a test that looks for one that is not there fails. */
template<typename Control = QWidget> Control *FindIn(const QWidget *window, const Name &name)
{
    auto *control = window->findChild<Control *>(name);
    EXPECT_NE(control, nullptr) << name.toStdString();
    return control;
}

/** A window, worked by the names of its controls. */
class Controls
{
public:
    Controls(QWidget *worked = nullptr)
        : window(worked)
    {
    }

    template<typename Control = QWidget> Control *Find(const Name &name) const
    {
        return FindIn<Control>(window, name);
    }

    void Click(const Name &name) const
    {
        auto *control = Find(name);
        EXPECT_TRUE(control->isVisible()) << name.toStdString();
        // At its left, for a radio button reacts on its indicator and caption only.
        QTest::mouseClick(control, Qt::LeftButton, {}, QPoint(10, control->height() / 2));
    }
    void Pick(const Name &list, int index) const { Find<QComboBox>(list)->setCurrentIndex(index); }
    /** Picks the parameter of that number in a list of parameters. */
    void PickParam(const Name &list, int p) const
    {
        Pick(list, Find<QComboBox>(list)->findText(QString::number(p) + u' ', Qt::MatchStartsWith));
    }
    /** Replaces what stands in a text box by typing. */
    void Type(const Name &name, const Name &text) const
    {
        auto *box = Find<QLineEdit>(name);
        EXPECT_TRUE(box->isVisible() && box->isEnabled()) << name.toStdString();
        box->setFocus();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Delete);
        QTest::keyClicks(box, text);
    }
    /** The same for the boxes of a control array. */
    void TypeAll(const char *array, std::initializer_list<const char *> texts) const
    {
        int index = 0;
        for (const char *text : texts)
            Type(ControlName(array, index++), text);
    }
    /** To the control that has the focus. */
    static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    /** Caption, text or choice. */
    std::string Text(const Name &name) const
    {
        const QWidget *control = Find(name);
        for (const char *property : {"text", "currentText", "plainText"})
            if (const QVariant text = control->property(property); text.isValid())
                return text.toString().toStdString();
        return {};
    }
    bool Enabled(const Name &name) const { return Find(name)->isEnabled(); }
    bool Visible(const Name &name) const { return Find(name)->isVisible(); }
    bool Checked(const Name &name) const { return Find<QAbstractButton>(name)->isChecked(); }

    QPointer<QWidget> window;
};

/**
 * Runs what opens a modal window, and works that; fails where none opens. What the work leaves open, and
 * what opens after it, is closed.
 */
template<typename Window = QWidget, typename Open, typename Work> void InModal(Open open, Work work)
{
    bool wasOpen = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        auto *modal = qobject_cast<Window *>(QApplication::activeModalWidget());
        if (modal == nullptr)
            return;
        look.stop();
        if (std::exchange(wasOpen, true))
            modal->close();
        else
            work(modal);
        look.start(0);
    });
    look.start(0);
    open();
    EXPECT_TRUE(wasOpen);
}

/** While it lives, texts are so many times as large. */
class FontScale
{
public:
    explicit FontScale(double scale)
    {
        QFont font = usual_;
        font.setPointSizeF(font.pointSizeF() * scale);
        // The edges of small letters would pass for colours of their own.
        font.setStyleStrategy(QFont::NoAntialias);
        QApplication::setFont(font);
    }
    ~FontScale() { QApplication::setFont(usual_); }

private:
    const QFont usual_ = QApplication::font();
};

} // namespace quorvik::testing
