#include "blocks/SignalFollower.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "blocks/BoxMenu.h"
#include "blocks/PathDown.h"
#include "desktop/ParameterDrag.h"
#include "desktop/ValueBox.h"
#include "link/ValueStates.h"
#include "platform/Guard.h"

#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <iterator>

namespace quorvik
{

namespace
{

/** All open block windows. */
std::vector<BlockForm *> OpenBlocks(const Desk &desk)
{
    std::vector<BlockForm *> open;
    for (int position = 1; position < desk.forms.Count(); ++position)
        if (auto *form = qobject_cast<BlockForm *>(desk.forms.At(position)))
            open.push_back(form);
    return open;
}

void Unite(std::vector<int> &into, const std::vector<int> &other)
{
    std::vector<int> both;
    std::ranges::set_union(into, other, std::back_inserter(both));
    into = std::move(both);
}

void Unite(CircuitPath &into, const CircuitPath &other)
{
    Unite(into.nodes, other.nodes);
    Unite(into.edges, other.edges);
}

} // namespace

SignalFollower::SignalFollower(Desk &desk, BlockForm &form, DiagramView &view)
    : QObject(&form)
    , desk_(desk)
    , form_(form)
    , view_(view)
    , drawing_(view.Shown())
    , window_(form.windowTitle())
    , into_(WireText::FindWires(drawing_.TheNet()))
    , probe_(new WireProbe(view, this))
    , tag_(new WireTag(&view))
{
    for (int text = 0; text < drawing_.Texts().size(); ++text)
        if (!WindowBeyond(text).isEmpty())
            probe_->MakeLink(text);
    On(probe_, &WireProbe::Pointed, this, [this](int element, const QPoint &place) {
        Follow({.element = element});
        ShowTag(place);
    });
    On(probe_, &WireProbe::Left, this, [this] {
        if (followed_.element >= 0)
            End();
    });
    On(probe_, &WireProbe::Activated, this, [this](int text) { Jump(text); });
    On(probe_, &WireProbe::MenuAsked, this,
       [this](int element, const QPoint &place) { ShowWireMenu(element, place); });
    On(probe_, &WireProbe::PathAsked, this, [this](int element, const QRect &around) {
        Follow({.element = element});
        ShowTag(around.center(), around);
    });
}

void SignalFollower::AddBox(ValueBox *box, int index)
{
    boxes_.resize(std::max(boxes_.size(), std::size_t(index) + 1));
    boxes_[std::size_t(index)] = box;
    box->installEventFilter(this);
    new ParameterDrag(
        box, [this, index] { return ParamOf(index); }, [this](int p) { return desk_.table.FullName(p); });
}

void SignalFollower::Tick()
{
    GreyWires();
    if (followed_.IsNothing())
        return;
    LightEverywhere();
    if (tag_->isVisible())
        ShowTag(place_, around_);
}

void SignalFollower::End()
{
    if (followed_.IsNothing())
        return;
    followed_ = {};
    tag_->hide();
    for (const BlockForm *form : OpenBlocks(desk_))
        form->Follower().Darken();
}

void SignalFollower::Follow(const Followed &what)
{
    if (what == followed_)
        return;
    followed_ = what;
    LightEverywhere();
}

void SignalFollower::FollowBox(int index)
{
    const Followed what{.row = index};
    if (what == followed_) {
        End();
        return;
    }
    Follow(what);
    ShowTag(PlaceOf(index).center(), PlaceOf(index));
}

QRect SignalFollower::PlaceOf(int index) const
{
    return boxes_[std::size_t(index)]->geometry();
}

QString SignalFollower::Text()
{
    if (followed_.row >= 0) {
        const int p = ParamOf(followed_.row);
        return p < 0 ? QString() : WireText::OfParameter(desk_, p);
    }
    return WireText(desk_, drawing_, Values()).OfEdge(drawing_.At(followed_.element).edge);
}

const NetValues &SignalFollower::Values()
{
    if (!values_)
        values_ = std::make_unique<NetValues>(drawing_.TheNet());
    values_->Follow(desk_.table);
    return *values_;
}

/** The parameter of a row; -1 where it shows none at present. */
int SignalFollower::ParamOf(int index) const
{
    const int p = form_.Sheet().Rows().at(index).param;
    return form_.Sheet().InTable(p) ? p : -1;
}

QList<QRect> SignalFollower::EndsOf(int element) const
{
    QList<QRect> ends;
    const Edge &edge = drawing_.TheNet().edges[std::size_t(drawing_.At(element).edge)];
    const QList<SheetRow> &rows = form_.Sheet().Rows();
    for (int i = 0; i < rows.size(); ++i)
        if (rows[i].node >= 0 && (rows[i].node == edge.from.node || rows[i].node == edge.to.node))
            ends.append(PlaceOf(i));
    for (int text = 0; text < drawing_.Texts().size(); ++text)
        if (const int node = drawing_.Texts().at(text).node;
            node >= 0 && (node == edge.from.node || node == edge.to.node))
            ends.append(view_.LabelOf(text)->geometry());
    return ends;
}

void SignalFollower::ShowTag(QPoint place, QRect around)
{
    QString text = Text();
    if (text.isEmpty())
        return;
    place_ = place;
    around_ = around;
    QList<QRect> clear{around};
    if (followed_.element >= 0) {
        clear += EndsOf(followed_.element);
        const Edge &edge = drawing_.TheNet().edges[std::size_t(drawing_.At(followed_.element).edge)];
        for (int i = 0; i < drawing_.Texts().size(); ++i)
            if (const int node = drawing_.Texts().at(i).node;
                probe_->IsLink(i) && (node == edge.from.node || node == edge.to.node))
                text += QStringLiteral("\nThe name opens %1").arg(WindowBeyond(i));
    }
    QList<QRect> elements;
    constexpr double signs = 1.5; // of a sum, beside it
    for (const Element &element : drawing_.Elements())
        if (element.node >= 0)
            elements.append(view_.ToPixels(Drawing::Bounds(element).adjusted(-signs, -signs, signs, signs))
                                .toAlignedRect());
    tag_->ShowAt(text, place, clear, elements);
}

CircuitPath SignalFollower::PathOf(const Circuit &circuit, int block) const
{
    constexpr Through through = Through::ActiveContacts;
    CircuitPath path;
    if (followed_.row >= 0) {
        const int node = circuit.NodeIn(block, form_.Sheet().Rows().at(followed_.row).node);
        path = circuit.Upstream(node, through);
        Unite(path, PathDown(circuit, node));
        return path;
    }
    const int local = drawing_.At(followed_.element).edge;
    const int edge = circuit.EdgeIn(block, local);
    path.edges = {edge};
    if (const int from = circuit.From(edge); from >= 0) {
        Unite(path, circuit.Upstream(from, through));
        // At a contact that is not touched the signal ends.
        if (!circuit.Downstream(from, through).HasEdge(edge))
            return path;
    }
    if (const int to = circuit.To(edge); to >= 0)
        Unite(path, PathDown(circuit, to));
    return path;
}

void SignalFollower::LightEverywhere()
{
    const Circuit *circuit = desk_.TheCircuit();
    const int block = circuit ? circuit->FindBlock(window_) : -1;
    if (block < 0)
        return;
    const CircuitPath path = PathOf(*circuit, block);
    for (const BlockForm *form : OpenBlocks(desk_))
        form->Follower().Light(*circuit, path);
}

void SignalFollower::Light(const Circuit &circuit, const CircuitPath &path)
{
    const int block = circuit.FindBlock(window_);
    if (block < 0)
        return;
    for (int i = 0; i < drawing_.Elements().size(); ++i) {
        const Element &element = drawing_.At(i);
        drawing_.SetLit(i, (element.edge >= 0 && path.HasEdge(circuit.EdgeIn(block, element.edge))) ||
                               (element.node >= 0 && path.HasNode(circuit.NodeIn(block, element.node))));
    }
}

void SignalFollower::Darken()
{
    for (int i = 0; i < drawing_.Elements().size(); ++i)
        drawing_.SetLit(i, false);
}

void SignalFollower::GreyWires()
{
    const bool canBeStale = desk_.table.PortOpen() || desk_.states.IsLost();
    if (!canBeStale && !isAnyFaint_)
        return;
    isAnyFaint_ = false;
    const Net &net = drawing_.TheNet();
    for (int i = 0; i < drawing_.Elements().size(); ++i) {
        const Element &element = drawing_.At(i);
        const bool isWire = element.symbol == Symbol::Wire && element.edge >= 0;
        const int from = isWire ? net.edges[std::size_t(element.edge)].from.node : element.node;
        if (!isWire && element.symbol != Symbol::Dot)
            continue;
        const bool isFaint =
            canBeStale && from >= 0 && !WireText::StaleSourcesOf(desk_, net, into_, from).empty();
        isAnyFaint_ = isAnyFaint_ || isFaint;
        drawing_.SetFaint(i, isFaint);
    }
}

QString SignalFollower::WindowBeyond(int text) const
{
    const DrawnText &drawn = drawing_.Texts().at(text);
    if (drawn.node < 0)
        return {};
    const Net &net = drawing_.TheNet();
    const int p = net.nodes[std::size_t(drawn.node)].param;
    QStringList windows = BlocksShowing(p);
    windows.removeAll(window_);
    if (windows.isEmpty() || windows.contains(drawn.text))
        return windows.isEmpty() ? QString() : drawn.text;
    const bool isEnd =
        std::ranges::any_of(net.edges, [&](const Edge &edge) { return edge.to.node == drawn.node; });
    if (const Circuit *circuit = form_.isVisible() ? desk_.TheCircuit() : nullptr)
        for (const int node : circuit->NodesOf(p)) {
            const QString &window = circuit->Block(circuit->BlockOfNode(node)).window;
            const bool leadsOn = !(isEnd ? circuit->OutOf(node) : circuit->Into(node)).empty();
            if (leadsOn && circuit->NodeAt(node).kind == NodeKind::Value && windows.contains(window))
                return window;
        }
    return windows.first();
}

void SignalFollower::Jump(int text)
{
    const int node = drawing_.Texts().at(text).node;
    const int p = drawing_.TheNet().nodes[std::size_t(node)].param;
    const QString window = WindowBeyond(text);
    End();
    JumpTo(desk_, window, p);
}

int SignalFollower::IndexOfBox(const QObject *box) const
{
    const auto at = std::ranges::find(boxes_, box);
    return at == boxes_.end() ? -1 : int(at - boxes_.begin());
}

bool SignalFollower::eventFilter(QObject *watched, QEvent *event)
{
    const int index = IndexOfBox(watched);
    if (index < 0)
        return false;
    bool isDone = false;
    Guarded([&] {
        switch (event->type()) {
        case QEvent::KeyPress: {
            const auto *key = static_cast<QKeyEvent *>(event);
            isDone = HandleBoxKey(index, key->key(), key->modifiers());
            break;
        }
        case QEvent::ContextMenu: {
            const auto *menu = static_cast<QContextMenuEvent *>(event);
            const QWidget *box = boxes_[std::size_t(index)];
            ShowMenu(index, menu->reason() == QContextMenuEvent::Mouse
                                ? menu->globalPos()
                                : box->mapToGlobal(box->rect().bottomLeft()));
            isDone = true;
            break;
        }
        case QEvent::Enter:
            // The whole name of what a selector points at; its caption has room for ten letters.
            if (form_.Sheet().Rows().at(index).IsLinked() && followed_.row != index)
                FollowBox(index);
            break;
        case QEvent::Leave:
        case QEvent::FocusOut:
            if (followed_.row == index)
                End();
            break;
        default:
            break;
        }
    });
    return isDone;
}

bool SignalFollower::HandleBoxKey(int index, int key, Qt::KeyboardModifiers modifiers)
{
    if (key == Qt::Key_W && modifiers == Qt::NoModifier) {
        FollowBox(index);
        return true;
    }
    if (key == Qt::Key_Escape && followed_.row == index) {
        End();
        return true;
    }
    if (key == Qt::Key_F10 && modifiers == Qt::ShiftModifier) {
        const QWidget *box = boxes_[std::size_t(index)];
        ShowMenu(index, box->mapToGlobal(box->rect().bottomLeft()));
        return true;
    }
    return false;
}

void SignalFollower::ShowMenu(int index, const QPoint &globalPlace)
{
    const int p = ParamOf(index);
    if (p < 0)
        return;
    End();
    QMenu *menu = MakeBoxMenu(desk_, p, boxes_[std::size_t(index)], [this, index] { FollowBox(index); });
    menu->popup(globalPlace);
}

void SignalFollower::ShowWireMenu(int element, const QPoint &globalPlace)
{
    const int p = WireText(desk_, drawing_, Values()).ParameterOf(drawing_.At(element).edge);
    if (p < 0)
        return;
    End();
    MakeBoxMenu(desk_, p, &view_, {})->popup(globalPlace);
}

} // namespace quorvik
