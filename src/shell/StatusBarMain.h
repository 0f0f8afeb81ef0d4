#pragma once

#include <QStatusBar>
#include <QTimer>
#include <cstdint>

class QLabel;
class QToolButton;

namespace quorvik
{

/** The main window's status bar: five panels, found by their keys as object names. */
class StatusBarMain : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusBarMain(QWidget *parent);

    void SetComStatus(bool isOnline);
    /** How far the drive's state wants to be seen. */
    enum class Condition : std::uint8_t { Calm, Stopping, Tripped };

    /** @param text the state, empty where none is known. @param faults what stands beside it, such as ":
     * Phase Loss"; empty for nothing. */
    void SetDriveStatus(const QString &text, Condition condition = Condition::Calm,
                        const QString &faults = {});
    void SetDriveModel(const QString &text);

Q_SIGNALS:
    /** A panel was clicked, or pressed with the keyboard. */
    void PanelClick(const QString &key);

private:
    QLabel *AddPanel(const QString &key, const QString &spokenName, const QString &widest);
    static void ShowIn(QLabel *panel, const QString &text);
    void ShowClock();

    QToolButton *comStatus_;
    bool eventFilter(QObject *watched, QEvent *event) override;

    QLabel *driveStatus_;
    QToolButton *driveFault_;
    Condition condition_ = Condition::Calm;
    QLabel *driveModel_;
    QLabel *date_ = nullptr;
    QLabel *time_ = nullptr;
    QTimer clock_;
};

} // namespace quorvik
