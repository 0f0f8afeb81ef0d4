#include "shell/EveryWindow.h"

#include "desktop/Mnemonics.h"
#include "support/Controls.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <map>

namespace quorvik::testing
{

namespace
{

/** Whether a widget's children are its own matter. */
bool IsControl(const QWidget *widget)
{
    return qobject_cast<const QAbstractScrollArea *>(widget) || qobject_cast<const QComboBox *>(widget) ||
           qobject_cast<const QLineEdit *>(widget);
}

void ExpectApartAndInside(const QWidget &holder)
{
    QList<QWidget *> children = holder.findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    children.removeIf([](const QWidget *child) { return !child->isVisible() || child->isWindow(); });
    for (const QWidget *child : children) {
        SCOPED_TRACE(child->objectName().toStdString() + " a " + child->metaObject()->className());
        EXPECT_TRUE(holder.rect().contains(child->geometry()));
        for (const QWidget *other : children)
            EXPECT_FALSE(other != child && child->geometry().intersects(other->geometry()))
                << other->objectName().toStdString();
        if (const auto *scrolled = qobject_cast<const QAbstractScrollArea *>(child); scrolled)
            for (const QWidget *sheet :
                 scrolled->viewport()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
                ExpectApartAndInside(*sheet);
        else if (!IsControl(child))
            ExpectApartAndInside(*child);
    }
}

void ExpectMnemonicsDiffer(const QWidget &window)
{
    QList<QChar> letters;
    for (const auto *button : window.findChildren<QAbstractButton *>())
        if (button->isVisible() && !MnemonicOf(button->text()).isNull())
            letters.append(MnemonicOf(button->text()));
    EXPECT_EQ(letters.size(), QSet<QChar>(letters.begin(), letters.end()).size());
}

void ExpectSpoken(const QWidget &window)
{
    for (QWidget *control : window.findChildren<QWidget *>())
        if (control->isVisible() && (control->focusPolicy() & Qt::TabFocus) != 0) {
            QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(control);
            EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty()) << control->objectName().toStdString();
        }
}

/** By window and control; the windows that are told to have them. */
const std::map<std::pair<QString, QString>, QString> &ToolTips()
{
    static const std::map<std::pair<QString, QString>, QString> toolTips = {
        {{Name("FormAnalogInputs"), Name("CommandIOMentor")}, Name("Start I/O Mentor")},
        {{Name("FormCustom"), Name("CommandDefault")}, Name("Set Custom Window Settings to Factory Defualt")},
        {{Name("FormDateTime"), Name("CommandSet")}, Name("Sets drive date/time to System date/time")},
        {{Name("FormZeroSpeedLogic"), Name("LabelAbs")}, Name("Absolute Value Function")},
        {{Name("FormZeroSpeedLogic"), Name("Label3")}, Name("And Function")},
        {{Name("FormColorSettings"), Name("CommandOK")}, Name("Apply Current Colors and Close")},
        {{Name("FormColorSettings"), Name("CommandCancel")}, Name("Cancel Current Colors")},
        {{Name("FormColorSettings"), Name("CommandApply")}, Name("Apply Current Colors")},
        {{Name("FormColorSettings"), Name("CommandDefault")}, Name("Set Colors to Default")},
    };
    return toolTips;
}

void ExpectToolTips(const QWidget &window)
{
    for (const auto &[place, toolTip] : ToolTips())
        if (place.first == window.objectName()) {
            EXPECT_EQ(FindIn(&window, place.second)->toolTip(), toolTip) << place.second.toStdString();
        }
}

class EveryWindow : public ::testing::TestWithParam<double>
{
protected:
    EveryWindow()
    {
        QFont font = usualFont_;
        font.setPointSizeF(font.pointSizeF() * GetParam());
        QApplication::setFont(font);
    }
    ~EveryWindow() override { QApplication::setFont(usualFont_); }

private:
    QFont usualFont_ = QApplication::font();
};

TEST_P(EveryWindow, ControlsStandApartHaveTheirOwnLettersAndAreSpoken)
{
    TestDesk desk;
    const Visit look = [](QWidget &window, const QString &) {
        ExpectApartAndInside(window);
        ExpectMnemonicsDiffer(window);
        ExpectSpoken(window);
        ExpectToolTips(window);
    };
    VisitBlocks(desk, look);
    VisitOtherWindows(desk, look);
    VisitMentors(desk, look);
}

INSTANTIATE_TEST_SUITE_P(AtFontScales, EveryWindow, ::testing::Values(1.0, 1.5));

} // namespace

} // namespace quorvik::testing
