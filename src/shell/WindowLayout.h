#pragma once

#include <QList>
#include <QRect>
#include <QString>

namespace quorvik
{

class MDIFormMain;

/** An open window as the user left it. */
struct KeptWindow {
    enum class State { Normal, Minimized, Maximized };

    QString form;   ///< its stated name
    int member = 0; ///< of a family; 0 for a window without
    QRect place;    ///< when neither minimised nor maximised: in the frame, or corner and size on the screen
    State state = State::Normal;
    int zoom = 0; ///< percent; 0 where the drawing follows the window
    bool isOutside = false;

    bool operator==(const KeptWindow &) const = default;
};

/** One line of text for the settings. */
QString LayoutText(const QList<KeptWindow> &windows);
/** What a line of text says; windows that it describes wrongly are left out. */
QList<KeptWindow> LayoutOf(const QString &text);

/** Keeps what is open now in the settings. */
void StoreLayout(MDIFormMain &main);
/** Opens what was kept, as far as that needs no answer from the user and is possible now. */
void RestoreLayout(MDIFormMain &main);

} // namespace quorvik
