#include "blocks/BoxMenu.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/CustomRows.h"
#include "circuit/Circuit.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "platform/Guard.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

namespace quorvik
{

namespace
{

/** The text of an entry; a name may hold what would be a mnemonic. */
QString Plain(QString text)
{
    return text.replace(u'&', QStringLiteral("&&"));
}

/** Where a neighbour and the parameter meet. */
QString WindowOf(const Circuit &circuit, const CircuitNeighbour &neighbour)
{
    return neighbour.node >= 0 ? circuit.Block(circuit.BlockOfNode(neighbour.node)).window
                               : BlocksShowing(neighbour.param).value(0);
}

void AddNeighbours(Desk &desk, QMenu *menu, const std::vector<CircuitNeighbour> &neighbours)
{
    const Circuit *circuit = desk.TheCircuit();
    bool isActive = true;
    for (const CircuitNeighbour &neighbour : neighbours) {
        // Those through which no signal passes now come last, under a line that says so.
        if (isActive && !neighbour.isActive)
            menu->addAction(QStringLiteral("Not at present:"))->setEnabled(false);
        isActive = neighbour.isActive;
        const QString window = WindowOf(*circuit, neighbour);
        QString text = desk.table.FullName(neighbour.param);
        if (!window.isEmpty())
            text += QStringLiteral(" - ") + window;
        if (neighbour.link >= 0)
            text += QStringLiteral(", through ") + circuit->Links().at(std::size_t(neighbour.link)).name;
        On(menu->addAction(Plain(text)), &QAction::triggered, menu,
           [&desk, window, p = neighbour.param] { JumpTo(desk, window, p); });
    }
    if (neighbours.empty())
        menu->addAction(QStringLiteral("Nothing in the block windows"))->setEnabled(false);
}

void AddCustomRows(Desk &desk, QMenu *menu, int p)
{
    const std::vector<int> rows = CustomRows(desk);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const int old = rows[row];
        const bool isUsed = old > 0 && old <= desk.table.UpperBound();
        const QString text = isUsed ? QStringLiteral("In place of %1").arg(desk.table.FullName(old))
                                    : QStringLiteral("Free row");
        QAction *entry = menu->addAction(Plain(text));
        entry->setEnabled(old != p);
        On(entry, &QAction::triggered, menu, [&desk, row, p] { PutInCustomRow(desk, int(row), p); });
    }
}

} // namespace

QMenu *MakeBoxMenu(Desk &desk, int p, QWidget *box, const std::function<void()> &lightPath)
{
    auto *menu = new QMenu(box);
    menu->setObjectName(QStringLiteral("BoxMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char *name, const QString &text, const std::function<void()> &act) {
        QAction *entry = menu->addAction(text);
        entry->setObjectName(QLatin1String(name));
        On(entry, &QAction::triggered, menu, act);
    };
    const auto addMenu = [&](const char *name, const QString &text) {
        QMenu *submenu = menu->addMenu(text);
        submenu->setObjectName(QLatin1String(name));
        return submenu;
    };
    if (const Circuit *circuit = desk.TheCircuit()) {
        AddNeighbours(desk, addMenu("BoxWhereFrom", QStringLiteral("&Where from")), circuit->SourcesOf(p));
        AddNeighbours(desk, addMenu("BoxFeeds", QStringLiteral("What it &feeds")), circuit->FeedsOf(p));
    }
    if (lightPath)
        add("BoxLightPath", QStringLiteral("Light its &path\tW"), lightPath);
    menu->addSeparator();
    add("BoxShowInList", QStringLiteral("Show in &list"), [&desk, p] { desk.ShowInList(p); });
    add("BoxCompare", QStringLiteral("Compare with fa&ctory"), [&desk, p] { desk.CompareWithFactory(p); });
    add("BoxAddToTrend", QStringLiteral("Add to &Trend"), [&desk, p] { desk.AddToTrend(p); });
    AddCustomRows(desk, addMenu("BoxAddToCustom", QStringLiteral("&Add to Custom")), p);
    add("BoxCopy", QStringLiteral("C&opy"), [&desk, p] {
        const ParamRecord &record = desk.table[p];
        QApplication::clipboard()->setText(desk.table.FullName(p) + u'\t' +
                                           ShownText(record.Value, record.Attributes));
    });
    return menu;
}

} // namespace quorvik
