#pragma once

#include <QStatusBar>
#include <QTimer>

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
    void SetDriveStatus(const QString &text);
    void SetDriveModel(const QString &text);

Q_SIGNALS:
    /** A panel was clicked, or pressed with the keyboard. */
    void PanelClick(const QString &key);

private:
    QLabel *AddPanel(const QString &key, const QString &spokenName, const QString &widest);
    static void ShowIn(QLabel *panel, const QString &text);
    void ShowClock();

    QToolButton *comStatus_;
    QLabel *driveStatus_;
    QLabel *driveModel_;
    QLabel *date_ = nullptr;
    QLabel *time_ = nullptr;
    QTimer clock_;
};

} // namespace quorvik
