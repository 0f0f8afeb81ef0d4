#include "shell/WindowLayout.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/diagram/DiagramFrame.h"
#include "platform/SettingsStore.h"
#include "shell/MDIFormMain.h"
#include "shell/WindowCommands.h"

#include <QAction>
#include <QStringList>
#include <algorithm>
#include <optional>

namespace quorvik
{

namespace
{

constexpr qsizetype MostWindows = 200;
constexpr int FarthestPixel = 100000;

constexpr const char *StateNames[] = {"normal", "minimized", "maximized"};
constexpr const char *PlaceNames[] = {"inside", "outside"};

/** Windows that are no blocks, and the entry that opens each without a question. */
constexpr const char *Openers[][2] = {
    {"FormViewParameters", "mnuListParameters(0)"},
    {"FormIOSimulator", "mnuToolsIOSimulator"},
    {"FormCompare", "mnuToolsCompare"},
    {"FormLinkDetails", "mnuToolsLinkDetails"},
    {"FormMap", "mnuToolsMap"},
    {"FormHistory", "mnuToolsHistory"},
    {"FormTrend", "mnuToolsTrend"},
    {"FormColorSettings", "mnuOptionsColorSettings"},
};

QString LayoutSection()
{
    return QStringLiteral("Windows");
}

QString LayoutKey()
{
    return QStringLiteral("Layout");
}

std::optional<int> NumberOf(const QString &text, int least, int most)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

template<std::size_t Size>
std::optional<int> PositionIn(const char *const (&names)[Size], const QString &name)
{
    const auto found = std::ranges::find(names, name, [](const char *each) { return QLatin1String(each); });
    return found == std::end(names) ? std::nullopt : std::optional(int(found - std::begin(names)));
}

std::optional<KeptWindow> WindowOf(const QString &text)
{
    const QStringList fields = text.split(u' ');
    if (fields.size() != 9)
        return {};
    const auto member = NumberOf(fields[1], 0, FarthestPixel);
    const auto left = NumberOf(fields[2], -FarthestPixel, FarthestPixel);
    const auto top = NumberOf(fields[3], -FarthestPixel, FarthestPixel);
    const auto width = NumberOf(fields[4], 1, FarthestPixel);
    const auto height = NumberOf(fields[5], 1, FarthestPixel);
    const auto state = PositionIn(StateNames, fields[6]);
    const auto zoom = NumberOf(fields[7], 0, DiagramFrame::LargestZoom);
    const auto outside = PositionIn(PlaceNames, fields[8]);
    if (!member || !left || !top || !width || !height || !state || !zoom || !outside)
        return {};
    return KeptWindow{fields[0], *member,      {*left, *top, *width, *height}, KeptWindow::State(*state),
                      *zoom,     *outside == 1};
}

/** The open window of that name and member; null for none. */
QWidget *FindOpen(const FormsCollection &forms, const KeptWindow &kept)
{
    for (int position = forms.Count() - 1; position >= 1; --position)
        if (forms.At(position)->objectName() == kept.form &&
            forms.At(position)->property("Tag").toInt() == kept.member)
            return forms.At(position);
    return nullptr;
}

void Open(MDIFormMain &main, const KeptWindow &kept)
{
    for (const BlockMenuEntry &entry : BlockCatalogue())
        if (entry.sheet && kept.form == QLatin1String(entry.form) &&
            (entry.IsFamily() ? kept.member >= entry.firstMember && kept.member <= entry.lastMember
                              : kept.member == 0)) {
            OpenBlock(main.TheDesk(), entry, kept.member);
            return;
        }
    for (const auto &[form, entry] : Openers)
        if (kept.form == QLatin1String(form))
            // Does nothing where it is disabled, as that of the I/O Simulator is on line.
            main.Menus().Entry(QString::fromLatin1(entry))->trigger();
}

} // namespace

QString LayoutText(const QList<KeptWindow> &windows)
{
    QStringList texts;
    for (const KeptWindow &kept : windows.first(std::min(windows.size(), MostWindows)))
        texts.append(QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 ")
                         .arg(kept.form)
                         .arg(kept.member)
                         .arg(kept.place.x())
                         .arg(kept.place.y())
                         .arg(kept.place.width())
                         .arg(kept.place.height())
                         .arg(QLatin1String(StateNames[int(kept.state)]))
                         .arg(kept.zoom) +
                     QLatin1String(PlaceNames[kept.isOutside ? 1 : 0]));
    return texts.join(u'|');
}

QList<KeptWindow> LayoutOf(const QString &text)
{
    QList<KeptWindow> windows;
    for (const QString &each : text.split(u'|'))
        if (const auto kept = WindowOf(each); kept && windows.size() < MostWindows)
            windows.append(*kept);
    return windows;
}

void StoreLayout(MDIFormMain &main)
{
    main.TheDesk().settings.SaveSetting(LayoutSection(), LayoutKey(), LayoutText(main.Windows().Layout()));
}

void RestoreLayout(MDIFormMain &main)
{
    const Desk &desk = main.TheDesk();
    // In their order, so that the last one comes to lie in front.
    for (const KeptWindow &kept : LayoutOf(desk.settings.GetSetting(LayoutSection(), LayoutKey()))) {
        if (!FindOpen(desk.forms, kept))
            Open(main, kept);
        if (QWidget *form = FindOpen(desk.forms, kept))
            main.Windows().Place(form, kept);
    }
}

} // namespace quorvik
