#include "blocks/BlockFixture.h"

#include "desktop/LongestText.h"

#include <QLineF>
#include <QSet>

namespace quorvik::testing
{

namespace
{

/** What a child window may take of a 1366 by 768 screen beside title bars, menu and status bar. */
constexpr QSize Room(1350, 670);

struct Walked {
    double fontScale;
    const BlockMenuEntry *entry;
    int member;
};

std::vector<Walked> AllWindows()
{
    std::vector<Walked> windows;
    for (const double fontScale : {1.0, 1.5, 2.0})
        for (const BlockMenuEntry &entry : BlockCatalogue())
            for (int member = std::max(entry.firstMember, 0);
                 entry.sheet && member <= std::max(entry.lastMember, 0); ++member)
                windows.push_back({fontScale, &entry, member});
    return windows;
}

/** What a case is called. */
void PrintTo(const Walked &walked, std::ostream *out)
{
    *out << walked.entry->form << walked.member << "At" << int(walked.fontScale * 100);
}

/** Whether the wire passes through the rectangle; touching its edge does not count, nor an empty text. */
bool Crosses(const QPolygonF &wire, const QRectF &taken)
{
    const QRectF rect = taken.adjusted(0.01, 0.01, -0.01, -0.01);
    if (rect.isEmpty())
        return false;
    const QLineF diagonals[] = {{rect.topLeft(), rect.bottomRight()}, {rect.bottomLeft(), rect.topRight()}};
    for (qsizetype i = 1; i < wire.size(); ++i) {
        const QLineF piece(wire.at(i - 1), wire.at(i));
        for (const QLineF &diagonal : diagonals)
            if (rect.contains(piece.p2()) ||
                piece.intersects(diagonal, nullptr) == QLineF::BoundedIntersection)
                return true;
    }
    return false;
}

class WalkerTest : public BlockFixture, public ::testing::WithParamInterface<Walked>
{
protected:
    WalkerTest() { Open(GetParam().entry->form, GetParam().member); }

    /** The controls that stand on the sheet. */
    QList<QWidget *> OnSheet() const
    {
        QList<QWidget *> controls = form->View().findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        controls.removeIf([](const QWidget *control) { return control->isHidden(); });
        return controls;
    }

    /** The pixels that a label's text takes. */
    static QRectF Ink(const QLabel &label)
    {
        QRectF ink(label.geometry());
        const double spare = ink.width() - label.fontMetrics().horizontalAdvance(label.text());
        if (label.alignment() & Qt::AlignRight)
            ink.setLeft(ink.left() + spare);
        else if (label.alignment() & Qt::AlignHCenter)
            ink.adjust(spare / 2, 0, -spare / 2, 0);
        else
            ink.setRight(ink.right() - spare);
        return ink.adjusted(1, 2, -1, -2);
    }

private:
    FontScale scale_{GetParam().fontScale};
};

TEST_P(WalkerTest, NoTextIsCut)
{
    for (const auto *label : form->View().findChildren<QLabel *>()) {
        SCOPED_TRACE(label->text().toStdString());
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
        EXPECT_LE(label->fontMetrics().height(), label->height());
        for (const Element &box : form->drawing().Elements()) {
            const QRectF room = form->View().ToPixels(box.rect);
            if (box.symbol == Symbol::Function && room.contains(label->geometry().center())) {
                EXPECT_GT(room.width(), label->width() + label->fontMetrics().averageCharWidth());
            }
        }
    }
    for (int row = 0; row < form->RowCount(); ++row) {
        EXPECT_LE(Text1(row)->WidthFor(LongestValueText(desk.table, Number(row))), Text1(row)->width())
            << row;
        EXPECT_LE(Text1(row)->fontMetrics().height(), Text1(row)->height()) << row;
    }
    if (GetParam().fontScale == 1.0) {
        EXPECT_LE(form->width(), Room.width());
        EXPECT_LE(form->height(), Room.height());
    }
}

TEST_P(WalkerTest, NoWireRunsThroughTextOrABox)
{
    for (const Element &element : form->drawing().Elements()) {
        if (element.symbol != Symbol::Wire && element.symbol != Symbol::Limit)
            continue;
        const QPolygonF wire = form->View().ToPixels(element.points);
        for (QWidget *control : OnSheet()) {
            const auto *label = qobject_cast<QLabel *>(control);
            if (!label && !qobject_cast<ValueBox *>(control))
                continue;
            const QRectF taken = label ? Ink(*label) : QRectF(control->geometry()).adjusted(1, 1, -1, -1);
            EXPECT_FALSE(Crosses(wire, taken)) << control->objectName().toStdString() << " "
                                               << (label ? label->text() : QString()).toStdString();
        }
    }
}

TEST_P(WalkerTest, EveryElementLeavesInk)
{
    if (GetParam().fontScale != 1.0)
        return;
    // The labels and boxes on the sheet are no ink of the drawing.
    for (QWidget *control : OnSheet())
        control->hide();
    auto &view = *form->findChild<DiagramView *>();
    Drawing &drawing = view.Shown();
    for (int i = 0; i < drawing.Elements().size(); ++i) {
        const Element &element = drawing.At(i);
        QImage ink[2];
        for (const bool visible : {false, true}) {
            drawing.SetVisible(i, visible);
            ink[visible] = view.grab().toImage();
        }
        EXPECT_NE(ink[0], ink[1]) << i << " " << element.name.toStdString() << " " << int(element.symbol);
    }
}

TEST_P(WalkerTest, TabReachesEveryRowAreaAndButton)
{
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    QSet<QString> missing;
    for (QWidget *control : form->findChildren<QWidget *>())
        if (control->isEnabled() && control->isVisible() && (control->focusPolicy() & Qt::TabFocus) != 0)
            missing.insert(control->objectName());
    for (qsizetype i = missing.size() + 5; i > 0; --i) {
        if (QWidget *focused = QApplication::focusWidget())
            missing.remove(focused->objectName());
        QTest::keyClick(form, Qt::Key_Tab);
    }
    EXPECT_TRUE(missing.isEmpty()) << missing.values().join(u' ').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Catalogue, WalkerTest, ::testing::ValuesIn(AllWindows()),
                         ::testing::PrintToStringParamName());

} // namespace

} // namespace quorvik::testing
