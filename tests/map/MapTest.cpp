#include "blocks/BlockCatalogue.h"
#include "blocks/DriveCircuit.h"
#include "map/FormMap.h"
#include "map/MapView.h"
#include "support/WindowTest.h"

#include <QContextMenuEvent>
#include <QFile>
#include <QLineF>
#include <QMenu>
#include <QRandomGenerator>
#include <algorithm>

namespace quorvik::testing
{

namespace
{

using namespace Param;

class MapTest : public WindowTest
{
protected:
    void Open() { map = Show<FormMap>(); }
    static int Card(const char *title) { return MapModel::FindCard(Name(title)); }

    std::string Value(const char *card, int row) const
    {
        return map->Model().Rows(Card(card)).at(std::size_t(row)).value.toStdString();
    }
    void LetItRun()
    {
        P(DriveState) = 1;
        P(LoopEnable) = 1;
        P(JogStatus) = 0;
    }
    std::vector<int> ReadFlags() const
    {
        std::vector<int> flags;
        for (int p = 0; p <= desk.table.LastParam; ++p)
            flags.push_back(desk.table[p].ReadFlag);
        return flags;
    }
    /** Captions of the windows that are open beside the map. */
    QStringList Others() const
    {
        QStringList captions;
        for (int position = 1; position < desk.forms.Count(); ++position)
            if (desk.forms.At(position) != map)
                captions.append(desk.forms.At(position)->windowTitle());
        return captions;
    }
    void CloseOthers() const
    {
        for (int position = desk.forms.Count() - 1; position > 0; --position)
            if (desk.forms.At(position) != map)
                desk.forms.At(position)->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    FormMap *map = nullptr;
};

QRectF Hull(const QPointF &from, const QPointF &to)
{
    return QRectF(from, to).normalized().adjusted(-0.1, -0.1, 0.1, 0.1);
}

TEST_F(MapTest, EveryBlockOpensFromItsCard)
{
    Open();
    for (const BlockMenuEntry &entry : BlockCatalogue())
        for (int member = entry.firstMember; entry.sheet && member <= entry.lastMember; ++member) {
            int row = -1;
            const int card = MapModel::CardOfWindow(entry.WindowCaption(member), &row);
            ASSERT_GE(card, 0) << entry.form;
            Q_EMIT map->View().Activated(card, row);
            EXPECT_EQ(Others(), QStringList{entry.WindowCaption(member)});
            CloseOthers();
        }
    Q_EMIT map->View().Activated(Card("Motor"), 1);
    EXPECT_EQ(Others(), QStringList{QStringLiteral("Current Loop")}) << "where the armature's current stands";
}

TEST_F(MapTest, NoWireRunsOverACardOrAnotherWire)
{
    QRandomGenerator random(4711);
    for (const int links : {0, 6, 20}) {
        for (int i = 0; i < links; ++i) {
            P(InternalLink1Source + 2 * i) = int(random.bounded(90, 434));
            P(InternalLink1Destination + 2 * i) = int(random.bounded(90, 434));
        }
        DriveCircuit circuit(desk.table);
        MapModel model(desk.table, desk.states);
        model.Follow(circuit.Get());
        MapLayout layout;
        layout.Route(model.Wires());
        for (int wire = 0; wire < int(model.Wires().size()); ++wire) {
            const QPolygonF &way = layout.Way(wire);
            SCOPED_TRACE(qPrintable(model.Wires()[std::size_t(wire)].words.join(u';')));
            for (int i = 0; i + 1 < way.size(); ++i) {
                const QRectF stretch = Hull(way[i], way[i + 1]);
                EXPECT_LT(std::min(stretch.width(), stretch.height()), 0.3) << "level or upright";
                for (int card = 0; card < MapModel::CardCount(); ++card)
                    EXPECT_FALSE(stretch.intersects(layout.Card(card).adjusted(0.5, 0.5, -0.5, -0.5)))
                        << MapCards()[std::size_t(card)].title;
                // With more wires than lanes have room for, they come close to each other.
                for (int other = 0; links < 20 && other < wire; ++other)
                    for (int k = 0; k + 1 < layout.Way(other).size(); ++k) {
                        const QRectF both = stretch & Hull(layout.Way(other)[k], layout.Way(other)[k + 1]);
                        EXPECT_LT(std::max(both.width(), both.height()), 2) << "over wire " << other;
                    }
            }
        }
    }
}

TEST_F(MapTest, TheWiresAreTheCircuits)
{
    P(InternalLink1Source) = MOPOutput;
    P(InternalLink1Destination) = SetpointB;
    P(AnalogIn2Destination) = PositiveILimit;
    P(AnalogOut1Source) = RampOutput;
    Open();
    struct Wanted {
        const char *from;
        const char *to;
        bool isLink;
    };
    const Wanted wires[] = {
        {"Setpoints", "Accel/Decel", false},         {"Velocity Loop", "Current Loop", false},
        {"Zero Speed Logic", "Current Loop", false}, {"Analog Inputs", "Current Loop", true},
        {"Accel/Decel", "Analog Outputs", true},     {"MOP", "Setpoint Sum", true}};
    for (const Wanted &wanted : wires)
        EXPECT_EQ(std::ranges::count_if(map->Model().Wires(),
                                        [&](const MapWire &wire) {
                                            return wire.from == Card(wanted.from) &&
                                                   wire.to == Card(wanted.to) && wire.isLink == wanted.isLink;
                                        }),
                  1)
            << wanted.from << " to " << wanted.to;
}

TEST_F(MapTest, APathGoesAsFarAsTheSignalDoes)
{
    struct Case {
        int driveState;
        const char *card;
        int row;
        std::vector<const char *> lit;
        std::vector<const char *> faint;
    };
    const Case cases[] = {
        {1,
         "Setpoints",
         0,
         {"Analog Inputs", "Accel/Decel", "Velocity Loop", "Current Loop", "Motor"},
         {"MOP", "Timer", "Digital Inputs"}},
        {0, "Setpoints", 0, {"Analog Inputs", "Setpoints"}, {"Accel/Decel", "Motor"}},
        {1, "Relay Outputs", 0, {"Start/Stop Logic", "Fault Logic"}, {"Velocity Loop", "Motor"}},
        {1, "Motor", -1, {"Current Loop", "Field Loop", "Setpoints"}, {"MOP"}},
    };
    LetItRun();
    Open();
    for (const Case &each : cases) {
        P(DriveState) = each.driveState;
        DriveCircuit circuit(desk.table);
        const MapPath path = map->Model().PathOf(circuit.Get(), Card(each.card), each.row);
        for (const char *card : each.lit)
            EXPECT_TRUE(path.cards[std::size_t(Card(card))]) << each.card << " lights " << card;
        for (const char *card : each.faint)
            EXPECT_FALSE(path.cards[std::size_t(Card(card))]) << each.card << " leaves " << card;
    }
}

TEST_F(MapTest, MarksTellWhatStandsInTheWay)
{
    LetItRun();
    Open();
    Tick();
    EXPECT_TRUE(map->Model().Marks().empty()) << map->Model().Marks().front().words.toStdString();
    struct Case {
        int param;
        int rawValue;
        const char *card;
        const char *words;
    };
    const Case cases[] = {
        {DriveState, 0, "Setpoints", "Ref Enable is off"},
        {DriveState, 0, "Accel/Decel", "Ramp Enable is off"},
        {LoopEnable, 0, "Velocity Loop", "(212) Loop Enable is False."},
        {OpenLoopArmSelect, 1, "Current Loop", "(104) Open Loop Arm Select is True"},
        {DriveModeLSB, 1, "Current Loop", "(110) Drive Mode (LSB) is 1"},
        {VelocityDemand, 12000, "Velocity Loop", "held at 100.00 % by (190) Forward Max Speed; 120.00 % is"},
        {AuxIDemand, -20000, "Current Loop", "by (100) Negative I Limit"},
        {FieldEnable, 0, "Field Loop", "(331) Field Enable is False"},
    };
    for (const Case &each : cases) {
        const int before = P(each.param);
        P(each.param) = each.rawValue;
        Tick();
        EXPECT_THAT(map->Model().MarkWords(Card(each.card)).join(u' ').toStdString(),
                    ::testing::HasSubstr(each.words));
        P(each.param) = before;
    }
}

TEST_F(MapTest, ValuesFollowTheTable)
{
    Open();
    P(Reference0) = 7288;
    P(DigitalIn1Status) = 1;
    P(LatchedFault) = 64;
    P(InternalLink1Source) = MOPOutput;
    P(InternalLink1Destination) = SetpointB;
    P(ClockHours) = 9;
    P(ClockMinutes) = 5;
    P(RelayOut1Status) = 1;
    Tick();
    EXPECT_EQ(Value("Setpoints", 0), "72.88 %");
    EXPECT_EQ(Value("Analog Inputs", 0), "72.88 %") << "what input 1 drives";
    EXPECT_EQ(Value("Digital Inputs", 0), "Closed");
    EXPECT_EQ(Value("Fault Logic", 1), "Phase Loss");
    EXPECT_EQ(Value("Internal Links", 0), "1 of 20");
    EXPECT_EQ(Value("Date/Time", 0), "09:05");
    EXPECT_EQ(Value("Relay Outputs", 0), "On");
}

TEST_F(MapTest, ReadsWhatItShowsAndGivesItBack)
{
    const std::vector<int> before = ReadFlags();
    const auto read = [&](int p) { return desk.table[p].ReadFlag - before[std::size_t(p)]; };
    Open();
    EXPECT_EQ(read(FinalIDemand), 1);
    EXPECT_EQ(read(DriveState), 1) << "the marks hang on it";
    EXPECT_EQ(read(AuxPISetpoint), 0);
    P(AnalogIn1Destination) = AuxPISetpoint;
    Tick();
    EXPECT_EQ(read(AuxPISetpoint), 1) << "input 1 drives it now";
    P(AnalogIn1Destination) = Reference0;
    Tick();
    EXPECT_EQ(read(AuxPISetpoint), 0);
    Close();
    EXPECT_EQ(ReadFlags(), before);
}

TEST_F(MapTest, KeysMoveOpenAndZoom)
{
    Open();
    MapView &view = map->View();
    ASSERT_TRUE(view.hasFocus());
    struct Move {
        Qt::Key key;
        const char *card;
    };
    const Move moves[] = {{Qt::Key_Right, "Setpoints"},
                          {Qt::Key_Right, "Accel/Decel"},
                          {Qt::Key_Down, "Aux PI Loop"},
                          {Qt::Key_Down, "Start/Stop Logic"},
                          {Qt::Key_Left, "Internal Links"},
                          {Qt::Key_Left, "Digital Inputs"},
                          {Qt::Key_Left, "Digital Inputs"},
                          {Qt::Key_Right, "Internal Links"},
                          {Qt::Key_Up, "MOP"},
                          {Qt::Key_Up, "Setpoints"}};
    EXPECT_FALSE(view.Light().path) << "nobody has looked for one";
    for (const Move &move : moves) {
        Press(move.key);
        EXPECT_EQ(view.FocusCard(), Card(move.card)) << move.card;
    }
    EXPECT_TRUE(view.Light().path);
    Press(Qt::Key_Escape);
    EXPECT_FALSE(view.Light().path);
    const double fitted = view.Zoom();
    Press(Qt::Key_Plus);
    EXPECT_GT(view.Zoom(), fitted);
    EXPECT_TRUE(QRectF(view.rect()).contains(view.CardOnScreen(Card("Setpoints")).center()));
    Press(Qt::Key_0);
    EXPECT_EQ(view.Zoom(), 1);
    Press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(view.Zoom(), 1) << "the program's own key";
    Press(Qt::Key_F);
    EXPECT_EQ(view.Zoom(), fitted);
    Press(Qt::Key_Return);
    EXPECT_EQ(Others(), QStringList{QStringLiteral("Setpoints")});
    view.SetFocusCard(Card("Thresholds"));
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_TRUE(Others().contains(QStringLiteral("Threshold A")) || map->findChild<QMenu *>());
}

TEST_F(MapTest, AClickOpensAndADragPans)
{
    Open();
    MapView &view = map->View();
    view.SetZoom(2, {});
    const QPoint place = view.CardOnScreen(Card("Setpoints")).center().toPoint();
    QTest::mousePress(&view, Qt::LeftButton, {}, place);
    QTest::mouseMove(&view, place + QPoint(-30, 0));
    QTest::mouseMove(&view, place + QPoint(-60, 0));
    QTest::mouseRelease(&view, Qt::LeftButton, {}, place + QPoint(-60, 0));
    EXPECT_TRUE(Others().isEmpty()) << "it was moved, not clicked";
    EXPECT_EQ(view.CardOnScreen(Card("Setpoints")).center().toPoint(), place + QPoint(-60, 0));
    QTest::mouseClick(&view, Qt::LeftButton, {}, place + QPoint(-60, 0));
    EXPECT_EQ(Others(), QStringList{QStringLiteral("Setpoints")});
}

TEST_F(MapTest, ItsMenusAddToTheTrend)
{
    std::vector<int> added;
    desk.desk.AddToTrend = [&added](int p) { added.push_back(p); };
    Open();
    MapView &view = map->View();
    const int card = Card("Setpoints");
    const QPoint place = view.CardOnScreen(card).center().toPoint();
    QContextMenuEvent ask(QContextMenuEvent::Mouse, place, view.mapToGlobal(place));
    QCoreApplication::sendEvent(&view, &ask);
    const auto *ofRow = view.findChild<QMenu *>(Name("BoxMenu"));
    ASSERT_NE(ofRow, nullptr);
    ofRow->findChild<QAction *>(Name("BoxAddToTrend"))->trigger();
    view.SetFocusCard(card);
    QTest::keyClick(&view, Qt::Key_F10, Qt::ShiftModifier);
    const auto *ofCard = map->findChild<QMenu *>(Name("MenuCard"));
    ASSERT_NE(ofCard, nullptr);
    ofCard->actions().first()->trigger();
    const std::vector<MapRow> &rows = map->Model().Rows(card);
    ASSERT_EQ(added.size(), 2U);
    EXPECT_NE(std::ranges::find(rows, added[0], &MapRow::param), rows.end());
    EXPECT_EQ(added[1], rows.front().param);
}

TEST_F(MapTest, ShowsWhereAParameterStands)
{
    OpenMap(desk.desk, VelError);
    OpenMap(desk.desk, AnalogIn3Gain);
    ASSERT_EQ(desk.forms.Count(), 2) << "one map";
    map = qobject_cast<FormMap *>(desk.forms.At(1));
    const MapLight light = map->View().Light();
    EXPECT_EQ(light.pulsing, Card("Analog Inputs"));
    EXPECT_EQ(light.pulsingRow, 2);
    EXPECT_TRUE(map->Reveal(VelError));
    EXPECT_EQ(map->View().Light().pulsingRow, 2);
    EXPECT_FALSE(map->Reveal(0));
    map->close();
}

TEST_F(MapTest, GoesToAPdfFile)
{
    Open();
    QString path = desk.folder.filePath(QStringLiteral("map.pdf"));
    map->ChooseFile = [&path](const QString &) { return path; };
    Click("CommandPdf");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().startsWith("%PDF"));
    path = desk.folder.filePath(QStringLiteral("none/map.pdf"));
    desk.asker.Expect("none");
    Click("CommandPdf");
    EXPECT_EQ(desk.asker.Shown.size(), 1);
}

} // namespace

} // namespace quorvik::testing
