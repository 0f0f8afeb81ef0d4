#include "shell/UserSettings.h"

#include "desktop/BoxColors.h"
#include "platform/Numbers.h"
#include "platform/SettingsStore.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr double twipsPerPixel = 15;
constexpr QSize smallestWindow{320, 240};

constexpr const char *colorKeys[] = {"ReadWrite", "ICR-RW", "ICR-RO", "ReadOnly", "LinkedDestination"};

const QString &Startup()
{
    static const QString section = QStringLiteral("Startup");
    return section;
}

const QString &ShowTips()
{
    static const QString key = QStringLiteral("Show Tips at Startup");
    return key;
}

const QString &KeepLayout()
{
    static const QString key = QStringLiteral("Keep Window Layout");
    return key;
}

double ReadNumber(const SettingsStore &settings, const QString &section, const QString &key, double fallback)
{
    const std::optional<double> stored = ParseNumber(settings.GetSetting(section, key));
    return stored && std::abs(*stored) < 1e9 ? *stored : fallback;
}

int ReadPixels(const SettingsStore &settings, const QString &key, double fallbackTwips)
{
    return qRound(ReadNumber(settings, Startup(), key, fallbackTwips) / twipsPerPixel);
}

void StorePixels(SettingsStore &settings, const QString &key, int pixels)
{
    settings.SaveSetting(Startup(), key, DoubleText(pixels * twipsPerPixel));
}

/** The screen that shows most of a place, or the first one where none shows any of it. */
QRect ScreenOf(const QRect &place)
{
    QRect best = QGuiApplication::primaryScreen()->availableGeometry();
    qint64 bestArea = 0;
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRect shared = screen->availableGeometry().intersected(place);
        const qint64 area = qint64(shared.width()) * shared.height();
        if (shared.isValid() && area > bestArea) {
            bestArea = area;
            best = screen->availableGeometry();
        }
    }
    return best;
}

/** Room that the desktop's frame takes on each side, and its title above. */
QMargins FrameMargins(const QWidget &window)
{
    const QStyle *style = window.style();
    const int side = style->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &window);
    return {side, side + style->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window), side, side};
}

QRect OntoScreen(QRect place, const QMargins &frame)
{
    const QRect screen = ScreenOf(place);
    // The place is that of the frame's corner, the size that of what the frame holds.
    place.setSize(place.size().expandedTo(smallestWindow).boundedTo(screen.size().shrunkBy(frame)));
    const QSize whole = place.size().grownBy(frame);
    if (screen.contains(QRect(place.topLeft(), whole)))
        return place;
    place.moveLeft(
        qBound(screen.left(), place.left(), qMax(screen.left(), screen.right() + 1 - whole.width())));
    place.moveTop(
        qBound(screen.top(), place.top(), qMax(screen.top(), screen.bottom() + 1 - whole.height())));
    return place;
}

} // namespace

bool ReadShowTips(const SettingsStore &settings)
{
    return ReadOption(settings, ShowTips());
}

void StoreShowTips(SettingsStore &settings, bool show)
{
    StoreOption(settings, ShowTips(), show);
}

bool ReadKeepLayout(const SettingsStore &settings)
{
    return ReadOption(settings, KeepLayout(), false);
}

void StoreKeepLayout(SettingsStore &settings, bool keep)
{
    StoreOption(settings, KeepLayout(), keep);
}

void ReadColors(const SettingsStore &settings, AccessColors &colors)
{
    for (std::size_t i = 0; i < std::size(colorKeys); ++i) {
        const double color = ReadNumber(settings, QStringLiteral("Colors"), QString::fromLatin1(colorKeys[i]),
                                        colors.DefaultColors[i]);
        colors.Colors[i] = color >= 0 && color <= 0xFFFFFF ? std::int32_t(color) : colors.DefaultColors[i];
    }
}

void StoreColors(SettingsStore &settings, const AccessColors &colors)
{
    for (std::size_t i = 0; i < std::size(colorKeys); ++i)
        settings.SaveSetting(QStringLiteral("Colors"), QString::fromLatin1(colorKeys[i]),
                             QString::number(colors.Colors[i]));
}

QRect OntoScreen(const QRect &place, const QWidget &window)
{
    return OntoScreen(place, FrameMargins(window));
}

QRect FirstPlace(QSize screen, const QRect &available, const QMargins &frame)
{
    constexpr QSize largestWithOwnPlace(1024, 768);
    constexpr double share = 0.85;
    if (screen.expandedTo(largestWithOwnPlace) != screen || screen == largestWithOwnPlace)
        return {};
    const QSize whole(qRound(available.width() * share), qRound(available.height() * share));
    const QPoint spare((available.width() - whole.width()) / 2, (available.height() - whole.height()) / 2);
    return {available.topLeft() + spare, whole.shrunkBy(frame)};
}

void ReadWindowPlace(const SettingsStore &settings, QWidget &window)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QMargins frame = FrameMargins(window);
    const QRect first = FirstPlace(screen->size(), screen->availableGeometry(), frame);
    const bool hasPlace = !settings.GetSetting(Startup(), QStringLiteral("Width")).isEmpty() ||
                          !settings.GetSetting(Startup(), QStringLiteral("Height")).isEmpty();
    const int top = ReadPixels(settings, QStringLiteral("Top"), 100);
    const int left = ReadPixels(settings, QStringLiteral("Left"), 150);
    const int height = ReadPixels(settings, QStringLiteral("Height"), 7000);
    const int width = ReadPixels(settings, QStringLiteral("Width"), 11000);
    const QRect place =
        OntoScreen(hasPlace || first.isEmpty() ? QRect(left, top, width, height) : first, frame);
    window.move(place.topLeft());
    window.resize(place.size());

    const int state = int(ReadNumber(settings, Startup(), QStringLiteral("WindowState"), 0));
    if (state == 1)
        window.setWindowState(Qt::WindowMinimized);
    else if (state == 2)
        window.setWindowState(Qt::WindowMaximized);
}

void StoreWindowPlace(SettingsStore &settings, const QWidget &window)
{
    const bool isPlain = !window.isMaximized() && !window.isMinimized();
    const QPoint corner = isPlain ? window.pos() : window.normalGeometry().topLeft();
    const QSize size = isPlain ? window.size() : window.normalGeometry().size();
    StorePixels(settings, QStringLiteral("Top"), corner.y());
    StorePixels(settings, QStringLiteral("Left"), corner.x());
    StorePixels(settings, QStringLiteral("Height"), size.height());
    StorePixels(settings, QStringLiteral("Width"), size.width());
    if (!window.isMinimized())
        settings.SaveSetting(Startup(), QStringLiteral("WindowState"),
                             window.isMaximized() ? QStringLiteral("2") : QStringLiteral("0"));
}

} // namespace quorvik
