#include "blocks/BlockFixture.h"
#include "blocks/CustomRows.h"
#include "blocks/DriveCircuit.h"
#include "blocks/SignalFollower.h"
#include "desktop/ParameterMime.h"
#include "support/OnLine.h"

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QMenu>

namespace quorvik::testing
{

class FollowTest : public BlockFixture
{
protected:
    FollowTest()
    {
        desk.desk.TheCircuit = [this] {
            circuit_.Get().Follow();
            return &circuit_.Get();
        };
    }

    DiagramView &View() const { return *form->findChild<DiagramView *>(); }
    const Drawing &Shown() const { return form->drawing(); }
    const WireTag &Tag() const { return *form->findChild<WireTag *>(); }
    std::string TagText() const { return Tag().isVisible() ? Tag().text().toStdString() : "no tag"; }

    /** The middle of a wire's longest piece, in pixels of the sheet. */
    QPoint MiddleOf(const Element &wire) const
    {
        const QPolygonF line =
            View().ToPixels(wire.symbol == Symbol::Link ? Shown().LinkLine(wire) : wire.points);
        QLineF longest;
        for (qsizetype i = 1; i < line.size(); ++i)
            if (const QLineF piece(line.at(i - 1), line.at(i)); piece.length() > longest.length())
                longest = piece;
        return longest.center().toPoint();
    }
    void HoverAt(const QPoint &place) const
    {
        QMouseEvent move(QEvent::MouseMove, place, View().mapToGlobal(place), Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(&View(), &move);
    }
    /** The wire into the box of a parameter, or out of it. */
    const Element &WireAtBox(int p, bool isInto) const
    {
        const Net &net = Shown().TheNet();
        return *std::ranges::find_if(Shown().Elements(), [&](const Element &element) {
            if (element.edge < 0)
                return false;
            const Edge &edge = net.edges[std::size_t(element.edge)];
            const int node = isInto ? edge.to.node : edge.from.node;
            return node >= 0 && net.nodes[std::size_t(node)].kind == NodeKind::Value &&
                   net.nodes[std::size_t(node)].param == p && edge.kind == Edge::Kind::Signal;
        });
    }
    void Hover(int p, bool isInto) const { HoverAt(MiddleOf(WireAtBox(p, isInto))); }
    static qsizetype LitIn(const BlockForm &window)
    {
        return std::ranges::count(window.drawing().Elements(), true, &Element::isLit);
    }
    ValueBox *BoxOf(int p) const
    {
        const QList<SheetRow> &rows = form->Sheet().Rows();
        return Text1(int(std::ranges::find(rows, p, &SheetRow::param) - rows.begin()));
    }
    QMenu *OpenMenu(int p) const
    {
        QTest::keyClick(BoxOf(p), Qt::Key_F10, Qt::ShiftModifier);
        return BoxOf(p)->findChild<QMenu *>(Name("BoxMenu"));
    }
    static QAction *Entry(const QMenu *menu, const QString &start)
    {
        for (QAction *entry : menu->actions())
            if (entry->text().startsWith(start))
                return entry;
        ADD_FAILURE() << "no entry " << start.toStdString();
        return nullptr;
    }

private:
    DriveCircuit circuit_{desk.table};
};

TEST_F(FollowTest, EveryWireTellsWhatItCarriesBesideItsEnds)
{
    for (const BlockMenuEntry &entry : BlockCatalogue())
        for (int member = entry.firstMember; entry.sheet && member <= entry.lastMember; ++member) {
            Open(entry.form, member);
            NetValues values(Shown().TheNet());
            values.Follow(desk.table);
            for (const Element &wire : Shown().Elements()) {
                if (wire.edge < 0)
                    continue;
                HoverAt(MiddleOf(wire));
                SCOPED_TRACE(form->windowTitle().toStdString() + ": " + TagText());
                ASSERT_TRUE(Tag().isVisible());
                EXPECT_TRUE(View().rect().contains(Tag().geometry()));
                if (values.OnEdge(wire.edge)) {
                    EXPECT_FALSE(Tag().text().startsWith(Name("not known")));
                }
                const Edge &edge = Shown().TheNet().edges[std::size_t(wire.edge)];
                for (const SheetRow &row : form->Sheet().Rows())
                    if (row.node == edge.from.node || row.node == edge.to.node) {
                        EXPECT_FALSE(View().ToPixels(row.rect).toRect().intersects(Tag().geometry()))
                            << row.param;
                    }
            }
            CloseByButton();
        }
}

TEST_F(FollowTest, ATagSaysValueUnitAndWhereFrom)
{
    struct Case {
        const char *form;
        int param; ///< at whose box the wire is
        bool isInto;
        Values values;
        std::string text;
    };
    const Case cases[] = {
        {"FormSetpoints",
         Param::Reference0,
         false,
         {{Param::Reference0, 7288}},
         "(217) Reference 0  72.88 %"},
        {"FormSetpoints", Param::RampInput, true, {{Param::DriveState, 0}}, "0.00 %  always"},
        {"FormSetpoints",
         Param::RampInput,
         true,
         {{Param::DriveState, 1}, {Param::Reference0, 7288}, {Param::ReferenceInvert, 1}},
         "-72.88 %  computed"},
        {"FormZeroSpeedLogic", Param::AtZeroSpeed, true, {{Param::VelFeedback, 0}}, "True  computed"},
        {"FormVelocityLoop", Param::VelLoopOutput, true, {}, "(205) Vel Loop Output  0.00 %"},
        {"FormStartStopLogic", Param::DriveReady, true, {{Param::RunEnable, 0}}, "False  computed"},
    };
    for (const Case &test : cases) {
        SCOPED_TRACE(test.text);
        Set(test.values);
        Open(test.form);
        Hover(test.param, test.isInto);
        EXPECT_EQ(TagText(), test.text);
        CloseByButton();
    }
    Open("FormFieldLoop");
    QStringList tags;
    for (const Element &wire : Shown().Elements())
        if (wire.edge >= 0) {
            HoverAt(MiddleOf(wire));
            tags.append(Tag().text());
        }
    EXPECT_TRUE(tags.contains(Name("not known: PI has memory")));
}

TEST_F(FollowTest, APathIsLitInAllOpenWindowsAndGoesOutWithThePointer)
{
    Set({{Param::DriveState, 1}, {Param::RampBypass, 1}});
    Open("FormAccelDecel");
    const BlockForm *ramp = form;
    Open("FormSetpoints");
    Hover(Param::Reference0, false);
    EXPECT_TRUE(WireAtBox(Param::RampInput, true).isLit);
    EXPECT_FALSE(WireAtBox(Param::Reference1, false).isLit);
    const auto gain = std::ranges::find(Shown().Elements(), Symbol::Gain, &Element::symbol);
    EXPECT_FALSE(gain->isLit) << "it leads to a contact that is not touched";
    EXPECT_GT(LitIn(*ramp), 0);
    const qsizetype lit = LitIn(*form);
    Hover(Param::Reference1, false);
    EXPECT_EQ(LitIn(*form), 1) << "at the contact that is not touched it ends";
    EXPECT_EQ(LitIn(*ramp), 0);
    // A switch that moves while the pointer rests takes the path with it.
    P(Param::RefSelectLSB) = 1;
    Tick();
    EXPECT_EQ(LitIn(*form), lit);
    EXPECT_GT(LitIn(*ramp), 0);
    HoverAt({0, 0});
    EXPECT_EQ(LitIn(*form) + LitIn(*ramp), 0);
    EXPECT_EQ(TagText(), "no tag");
    Hover(Param::Reference1, false);
    CloseByButton();
    EXPECT_EQ(LitIn(*ramp), 0) << "its window is closed";
}

TEST_F(FollowTest, KeysLightAPathAndANameLeadsOn)
{
    Open("FormVelocityLoop");
    QTest::keyClick(BoxOf(Param::VelError), Qt::Key_W);
    EXPECT_EQ(TagText(), "(192) Vel Error  0.00 %");
    EXPECT_FALSE(BoxOf(Param::VelError)->geometry().intersects(Tag().geometry()));
    EXPECT_GT(LitIn(*form), 0);
    QTest::keyClick(BoxOf(Param::VelError), Qt::Key_Escape);
    EXPECT_EQ(LitIn(*form), 0);
    QLabel *end = Find<QLabel>("LabelFinalIDemand");
    EXPECT_EQ(end->focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(end->cursor().shape(), Qt::PointingHandCursor);
    QTest::keyClick(end, Qt::Key_Return);
    ASSERT_EQ(desk.forms.Count(), 3);
    form = static_cast<BlockForm *>(desk.forms.At(2));
    EXPECT_EQ(form->windowTitle(), Name("Current Loop"));
    EXPECT_TRUE(form->Shows(Param::FinalIDemand));
}

TEST_F(FollowTest, AMenuLeadsToNeighboursAndCopies)
{
    Set({{Param::DriveState, 1},
         {Param::InternalLink1Source, Param::RampOutput},
         {Param::InternalLink1Source + 1, Param::Reference0}});
    Open("FormSetpoints");
    BlockForm *setpoints = form;
    P(Param::Reference0) = 7288;
    QMenu *menu = OpenMenu(Param::Reference0);
    ASSERT_NE(menu, nullptr) << "Shift and F10";
    Entry(menu, Name("C&opy"))->trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), Name("(217) Reference 0\t72.88 %"));
    const auto *from = menu->findChild<QMenu *>(Name("BoxWhereFrom"));
    EXPECT_TRUE(
        Entry(from, Name("(225) Ramp Output - "))->text().endsWith(Name(", through Internal Link 1")));
    const auto *feeds = OpenMenu(Param::RampInput)->findChild<QMenu *>(Name("BoxFeeds"));
    Entry(feeds, Name("(225) "))->trigger();
    form = static_cast<BlockForm *>(desk.forms.At(desk.forms.Count() - 1));
    EXPECT_EQ(form->windowTitle(), Name("Accel/Decel"));
    form = setpoints;
    const auto *sources = OpenMenu(Param::RampInput)->findChild<QMenu *>(Name("BoxWhereFrom"));
    const QList<QAction *> entries = sources->actions();
    const qsizetype heading = entries.indexOf(Entry(sources, Name("Not at present:")));
    EXPECT_LT(entries.indexOf(Entry(sources, Name("(217) "))), heading);
    EXPECT_GT(entries.indexOf(Entry(sources, Name("(218) "))), heading);
}

TEST_F(FollowTest, ABoxAndAWireAddToTheTrend)
{
    std::vector<int> added;
    desk.desk.AddToTrend = [&added](int p) { added.push_back(p); };
    Open("FormVelocityLoop");
    Entry(OpenMenu(Param::VelFeedback), Name("Add to &Trend"))->trigger();
    const QPoint place = MiddleOf(WireAtBox(Param::FinalVelDemand, true));
    QContextMenuEvent ask(QContextMenuEvent::Mouse, place, View().mapToGlobal(place));
    QCoreApplication::sendEvent(&View(), &ask);
    const auto *menu = View().findChild<QMenu *>(Name("BoxMenu"), Qt::FindDirectChildrenOnly);
    ASSERT_NE(menu, nullptr);
    Entry(menu, Name("Add to &Trend"))->trigger();
    EXPECT_EQ(added, (std::vector<int>{Param::VelFeedback, Param::FinalVelDemand}));
}

TEST_F(FollowTest, ABoxIsDraggedAsItsParameterAndAClickStaysOne)
{
    Open("FormSetpoints");
    // The first reference is an input's, and not for editing.
    constexpr int reference = Param::Reference0 + 1;
    ValueBox *box = BoxOf(reference);
    std::vector<int> edited;
    desk.asker.OnEditValue = [&edited](int p, std::int32_t) {
        edited.push_back(p);
        return std::nullopt;
    };
    const QPoint middle = box->rect().center();
    const auto move = [&](const QPoint &by) {
        const QPoint place = middle + by;
        QMouseEvent event(QEvent::MouseMove, place, box->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                          {});
        QCoreApplication::sendEvent(box, &event);
    };
    // A hand that trembles on the box clicks it all the same.
    const QPoint tremble(QApplication::startDragDistance() + 1, 0);
    ASSERT_TRUE(box->rect().contains(middle + tremble));
    QTest::mousePress(box, Qt::LeftButton, {}, middle);
    move(tremble);
    EXPECT_EQ(box->findChild<QDrag *>(), nullptr);
    QTest::mouseRelease(box, Qt::LeftButton, {}, middle + tremble);
    EXPECT_EQ(edited, std::vector<int>{reference});

    QTest::mousePress(box, Qt::LeftButton, {}, middle);
    move(QPoint(box->width(), 3 * box->height()));
    const auto *drag = box->findChild<QDrag *>();
    ASSERT_NE(drag, nullptr);
    EXPECT_EQ(ParameterOf(*drag->mimeData()), reference);
    EXPECT_EQ(drag->mimeData()->text(), desk.table.FullName(reference));
    EXPECT_EQ(edited.size(), 1U) << "a drag edits nothing";
    QTest::mouseClick(box, Qt::LeftButton);
    EXPECT_EQ(edited.size(), 2U);
}

TEST_F(FollowTest, AParameterTakesARowOfTheCustomWindowOpenOrClosed)
{
    for (const bool isOpen : {false, true}) {
        const int row = isOpen ? 4 : 3;
        if (isOpen)
            Open("FormCustom");
        Open("FormSetpoints");
        const auto *rows = OpenMenu(Param::RampInput)->findChild<QMenu *>(Name("BoxAddToCustom"));
        rows->actions().at(row)->trigger();
        EXPECT_EQ(CustomRows(desk.desk).at(std::size_t(row)), Param::RampInput);
        while (desk.forms.Count() > 1)
            delete desk.forms.At(1);
        EXPECT_EQ(CustomRows(desk.desk).at(std::size_t(row)), Param::RampInput) << "it is stored";
    }
}

TEST_F(FollowTest, AWireIsFaintAndItsTagSaysSoWhileItsValueIsNotTheDrives)
{
    Set({{Param::DriveState, 1}, {Param::Reference0, 7288}, {Param::ReferenceInvert, 1}});
    Open("FormSetpoints");
    OnLine drive(desk.link);
    Tick();
    const auto checkTag = [this](const std::string &more) {
        Hover(Param::RampInput, true);
        EXPECT_EQ(TagText(), "-72.88 %  computed" + more);
        HoverAt({0, 0});
    };
    const std::string stale = ", from values that are not of now: ";
    checkTag(stale + "(215) Ref Select (MSB), (216) Ref Select (LSB), and 3 more");
    const auto isFaint = [this] { return WireAtBox(Param::Reference0, false).isFaint; };
    EXPECT_TRUE(isFaint());
    drive.Tells(Param::Reference0, P(Param::Reference0));
    Tick();
    EXPECT_FALSE(isFaint());
    for (const int p : {Param::RefSelectLSB, Param::RefSelectMSB, Param::JogStatus})
        drive.Tells(p, P(p));
    checkTag(stale + "(222) Reference Invert");
    drive.Tells(Param::ReferenceInvert, 1);
    checkTag("");
    EXPECT_TRUE(WireAtBox(Param::Reference1, false).isFaint);
    drive.Leaves();
    Tick();
    EXPECT_TRUE(isFaint());
    Hover(Param::RampInput, true);
    EXPECT_NE(TagText().find(stale), std::string::npos) << TagText();
}

} // namespace quorvik::testing
