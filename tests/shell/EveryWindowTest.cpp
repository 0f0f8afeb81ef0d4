#include "shell/EveryWindow.h"

#include "blocks/diagram/DiagramFrame.h"
#include "desktop/Mnemonics.h"
#include "desktop/ValueBox.h"
#include "support/Controls.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QGroupBox>
#include <QHeaderView>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>

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

/** The screen less what surrounds a window: its title, and in the frame the main window's title, menu,
 * standing message and status bar, as they were measured. */
QSize RoomFor(const QWidget &window)
{
    constexpr int title = 24;
    const bool isInFrame = qobject_cast<const Form *>(&window) && window.windowType() != Qt::Dialog;
    return {1366 - 8, 768 - title - (isInFrame ? 15 + 7 * window.fontMetrics().height() : 0)};
}

int WidthOf(const QWidget &widget, const QString &text)
{
    return widget.fontMetrics().size(Qt::TextShowMnemonic, text).width();
}

/** The room that a control's style leaves for its text; its whole width where nothing else is known. */
int RoomForText(const QWidget &widget)
{
    if (const auto *list = qobject_cast<const QComboBox *>(&widget)) {
        QStyleOptionComboBox option;
        option.initFrom(list);
        return list->style()
            ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, list)
            .width();
    }
    const bool isRadio = qobject_cast<const QRadioButton *>(&widget) != nullptr;
    if (isRadio || widget.inherits("QCheckBox")) {
        QStyleOptionButton option;
        option.initFrom(&widget);
        return widget.style()
            ->subElementRect(isRadio ? QStyle::SE_RadioButtonContents : QStyle::SE_CheckBoxContents, &option,
                             &widget)
            .width();
    }
    return widget.width();
}

void ExpectNothingCut(const QWidget &window)
{
    for (const auto *widget : window.findChildren<QWidget *>()) {
        if (!widget->isVisible())
            continue;
        SCOPED_TRACE(widget->objectName().toStdString() + " a " + widget->metaObject()->className());
        if (const auto *label = qobject_cast<const QLabel *>(widget)) {
            const bool isShort = label->toolTip().isEmpty() && !label->text().isEmpty();
            const QSize need =
                label->wordWrap()
                    ? QSize(0, label->heightForWidth(label->width()))
                    : label->sizeHint() - QSize(0, 1); // a line has that to spare around its letters
            EXPECT_FALSE(isShort && need.expandedTo(label->size()) != label->size())
                << label->text().toStdString() << ' ' << need.width() << 'x' << need.height() << " in "
                << label->width() << 'x' << label->height();
        } else if (const auto *header = qobject_cast<const QHeaderView *>(widget)) {
            for (int i = 0; header->orientation() == Qt::Horizontal && i < header->count(); ++i) {
                const QString text = header->model()->headerData(i, Qt::Horizontal).toString();
                EXPECT_TRUE(header->isSectionHidden(i) || WidthOf(*header, text) < header->sectionSize(i))
                    << text.toStdString();
            }
        } else if (!qobject_cast<const ValueBox *>(widget)) {
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            const auto *frame = qobject_cast<const QGroupBox *>(widget);
            const auto *list = qobject_cast<const QComboBox *>(widget);
            const QString text = button  ? button->text()
                                 : frame ? frame->title()
                                 : list  ? list->currentText()
                                         : QString();
            EXPECT_TRUE(text.isEmpty() || (list && !list->toolTip().isEmpty()) ||
                        WidthOf(*widget, text) <= RoomForText(*widget))
                << text.toStdString();
        }
    }
}

/** Letters of the bar that a window took before it was known that it shares them; the bar leaves them. */
bool IsTold(const QString &name, QChar letter)
{
    static const QHash<QString, QString> told{{Name("FormIOSimulator"), Name("O")}};
    return told.value(name).contains(letter);
}

void ExpectMnemonicsDiffer(const QWidget &window)
{
    QList<QChar> letters;
    const auto add = [&letters](const QString &caption) {
        if (!MnemonicOf(caption).isNull())
            letters.append(MnemonicOf(caption));
    };
    for (const auto *button : window.findChildren<QAbstractButton *>())
        if (button->isVisible())
            add(button->text());
    for (const auto *frame : window.findChildren<QGroupBox *>())
        if (frame->isVisible())
            add(frame->title());
    for (const auto *label : window.findChildren<QLabel *>())
        if (label->isVisible() && label->buddy())
            add(label->text());
    const QString ofBar = qobject_cast<const Form *>(&window) ? Name("FOBTMWH") : QString();
    for (const QChar letter : letters) {
        EXPECT_EQ(letters.count(letter), 1) << letter.toLatin1();
        EXPECT_TRUE(!ofBar.contains(letter) || IsTold(window.objectName(), letter)) << letter.toLatin1();
    }
}

void ExpectSpoken(const QWidget &window)
{
    for (QWidget *control : window.findChildren<QWidget *>())
        if (control->isVisible() && (control->focusPolicy() & Qt::TabFocus) != 0) {
            QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(control);
            EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty()) << control->objectName().toStdString();
        }
}

QRect PlaceOf(const QWidget &control)
{
    return {control.mapToGlobal(QPoint()), control.size()};
}

/** Whether a control has an order of its own: that of its signals in a drawing, the way forward first below a
 * Mentor's page, the window itself before its buttons while a progress runs. */
bool HasOwnOrder(const QWidget *control)
{
    if (control->isWindow() || control->objectName().startsWith(QStringLiteral("CmdNav")))
        return true;
    for (; control; control = control->parentWidget())
        if (qobject_cast<const DiagramFrame *>(control))
            return true;
    return false;
}

/** In a row to the right, or else down, or up into the next column. */
bool FollowsInReading(const QWidget &control, const QWidget &next)
{
    const QRect one = PlaceOf(control);
    const QRect other = PlaceOf(next);
    const bool isUpOrBeside =
        other.center().y() < one.top() || std::abs(other.center().y() - one.center().y()) < 4;
    return HasOwnOrder(&control) || HasOwnOrder(&next) || !isUpOrBeside || other.left() > one.left();
}

/** Of choices that exclude each other Tab stops at one; which, shows as it gets there. */
bool IsTabStop(const QWidget &control)
{
    return control.isVisible() && control.isEnabled() && !control.focusProxy() &&
           (control.focusPolicy() & Qt::TabFocus) != 0;
}

void ExpectTabVisitsAll(const QWidget &window)
{
    QList<QWidget *> stops = window.findChildren<QWidget *>();
    stops.removeIf([](const QWidget *control) { return !IsTabStop(*control); });
    if (stops.isEmpty())
        return;
    QWidget *first = window.nextInFocusChain();
    while (!stops.contains(first))
        first = first->nextInFocusChain();
    first->setFocus(Qt::TabFocusReason);
    QList<QWidget *> visited{first};
    for (;;) {
        QWidget *last = visited.constLast();
        // A date has several fields.
        for (int field = 0; field < 8 && QApplication::focusWidget() == last; ++field)
            Controls::Press(Qt::Key_Tab);
        QWidget *control = QApplication::focusWidget();
        ASSERT_NE(control, nullptr);
        if (visited.contains(control)) {
            EXPECT_TRUE(control == first) << control->objectName().toStdString() << " comes again";
            break;
        }
        EXPECT_TRUE(FollowsInReading(*last, *control))
            << last->objectName().toStdString() << " before " << control->objectName().toStdString();
        visited.append(control);
    }
    for (QWidget *stop : stops)
        EXPECT_TRUE(visited.contains(stop) || !IsTabStop(*stop))
            << stop->objectName().toStdString() << " is not reached";
}

/** By what is painted: the colour that covers most, against the one that stands out most. */
void ExpectReadable(QWidget &window)
{
    const QImage picture = window.grab().toImage();
    for (const auto *widget : window.findChildren<QWidget *>()) {
        const QString text = widget->property("text").toString().trimmed();
        const bool isText = qobject_cast<const QLabel *>(widget) ||
                            qobject_cast<const QAbstractButton *>(widget) ||
                            qobject_cast<const ValueBox *>(widget);
        if (!isText || text.isEmpty() || !widget->isEnabled() || widget->visibleRegion() != widget->rect())
            continue;
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        QHash<QRgb, int> colors;
        for (int y = place.top(); y <= place.bottom(); ++y)
            for (int x = place.left(); x <= place.right(); ++x)
                ++colors[picture.pixel(x, y)];
        const auto most = std::max_element(colors.cbegin(), colors.cend());
        double contrast = 0;
        for (auto color = colors.cbegin(); color != colors.cend(); ++color)
            contrast = std::max(contrast, Contrast(most.key(), color.key()));
        EXPECT_GE(contrast, LeastContrast)
            << widget->objectName().toStdString() << " \"" << text.toStdString() << '"';
    }
}

/** While it lives, windows are light on dark. */
class DarkPalette
{
public:
    explicit DarkPalette(bool isDark)
    {
        if (!isDark)
            return;
        QPalette dark(QColor(53, 53, 53), QColor(45, 45, 45));
        dark.setColor(QPalette::Base, QColor(35, 35, 35));
        QApplication::setPalette(dark);
    }
    ~DarkPalette() { QApplication::setPalette(usual_); }

private:
    const QPalette usual_ = QApplication::palette();
};

class EveryWindow : public ::testing::TestWithParam<std::tuple<double, bool>>
{
protected:
    static void Look(QWidget &window, const QString &picture)
    {
        SCOPED_TRACE(picture.toStdString());
        const QSize room = RoomFor(window);
        const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
        EXPECT_LE(least.width(), room.width());
        EXPECT_LE(least.height(), room.height());
        window.resize(window.size().boundedTo(room));
        QApplication::processEvents();
        ExpectApartAndInside(window);
        ExpectNothingCut(window);
        ExpectMnemonicsDiffer(window);
        ExpectSpoken(window);
        ExpectTabVisitsAll(window);
        ExpectReadable(window);
    }

    const FontScale scale{std::get<0>(GetParam())};
    const DarkPalette palette{std::get<1>(GetParam())};
    TestDesk desk;
};

TEST_P(EveryWindow, BlocksCanBeReadAndWorkedByKeys)
{
    VisitBlocks(desk, Look);
}

TEST_P(EveryWindow, OthersCanBeReadAndWorkedByKeys)
{
    VisitOtherWindows(desk, Look);
}

TEST_P(EveryWindow, MentorsCanBeReadAndWorkedByKeys)
{
    VisitMentors(desk, Look);
}

std::string NameOf(const ::testing::TestParamInfo<std::tuple<double, bool>> &each)
{
    const auto [scale, isDark] = each.param;
    return std::to_string(int(scale * 100)) + (isDark ? "dark" : "light");
}

INSTANTIATE_TEST_SUITE_P(At, EveryWindow,
                         ::testing::Combine(::testing::Values(1.0, 1.5, 2.0), ::testing::Bool()), NameOf);

} // namespace

} // namespace quorvik::testing
