#include "blocks/BlockFixture.h"
#include "blocks/diagram/DiagramFrame.h"

#include <QScrollBar>
#include <QWheelEvent>

namespace quorvik::testing
{

class Zoom : public BlockFixture
{
protected:
    void SetUp() override
    {
        Open("FormVelocityLoop");
        form->resize(500, 300);
        frame = form->findChild<DiagramFrame *>();
        view = &form->View();
    }

    void Turn(int delta, const QPoint &at, Qt::KeyboardModifiers keys = Qt::ControlModifier) const
    {
        QWidget *viewport = frame->viewport();
        QWheelEvent event(at, viewport->mapToGlobal(at), {}, {0, delta}, Qt::NoButton, keys,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport, &event);
    }
    QPointF CellsAt(const QPoint &at) const { return view->ToCells(at - view->pos()); }

    DiagramFrame *frame = nullptr;
    const DiagramView *view = nullptr;
};

TEST_F(Zoom, TheWheelKeepsWhatIsUnderThePointer)
{
    frame->SetZoom(100);
    const QPoint at(310, 140);
    const QPointF cells = CellsAt(at);
    for (const int delta : {120, 120, 120, -120, 60, 60}) {
        Turn(delta, at);
        // Scroll bars move by whole pixels, and texts may make the sheet begin elsewhere.
        EXPECT_NEAR(CellsAt(at).x(), cells.x(), 0.3) << frame->Zoom();
        EXPECT_NEAR(CellsAt(at).y(), cells.y(), 0.3) << frame->Zoom();
    }
    EXPECT_EQ(frame->Zoom(), 175) << "two halves of a step are one";
    Turn(-120, at, Qt::NoModifier);
    EXPECT_EQ(frame->Zoom(), 175);
    EXPECT_GT(CellsAt(at).y(), cells.y()) << "without Ctrl it scrolls";
}

TEST_F(Zoom, StepsEndWhereTextCanBarelyBeReadAndAtThreeTimes)
{
    for (int step = 0; step < 20; ++step)
        frame->ZoomIn();
    EXPECT_EQ(frame->Zoom(), 300);
    EXPECT_NEAR(view->Scale(), 3, 0.01);
    for (int step = 0; step < 20; ++step)
        frame->ZoomOut();
    for (const QLabel *label : view->findChildren<QLabel *>())
        EXPECT_GE(QFontInfo(label->font()).pixelSize(), 8);
    frame->ZoomIn();
    EXPECT_EQ(frame->Zoom() % 25, 0);
}

TEST_F(Zoom, AZoomOfTheUsersOwnOutlivesResizingAndFitFollowsAgain)
{
    form->resize(form->sizeHint());
    EXPECT_EQ(frame->horizontalScrollBar()->maximum(), 0);
    frame->ZoomIn();
    const double scale = view->Scale();
    EXPECT_GT(frame->horizontalScrollBar()->maximum(), 0);
    form->resize(form->sizeHint() * 1.5);
    EXPECT_EQ(view->Scale(), scale);
    frame->Fit();
    EXPECT_GT(view->Scale(), scale);
    EXPECT_EQ(frame->horizontalScrollBar()->maximum(), 0);
}

} // namespace quorvik::testing
