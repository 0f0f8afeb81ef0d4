#include "shell/EveryWindow.h"

#include "desktop/Mnemonics.h"
#include "support/Controls.h"

#include <QAbstractScrollArea>
#include <QAccessible>

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

using EveryWindow = ::testing::TestWithParam<double>;

TEST_P(EveryWindow, ControlsStandApartHaveTheirOwnLettersAndAreSpoken)
{
    const FontScale scale(GetParam());
    TestDesk desk;
    const Visit look = [](QWidget &window, const QString &) {
        ExpectApartAndInside(window);
        ExpectMnemonicsDiffer(window);
        ExpectSpoken(window);
    };
    VisitBlocks(desk, look);
    VisitOtherWindows(desk, look);
    VisitMentors(desk, look);
}

INSTANTIATE_TEST_SUITE_P(AtFontScales, EveryWindow, ::testing::Values(1.0, 1.5));

} // namespace

} // namespace quorvik::testing
