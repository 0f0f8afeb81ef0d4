#pragma once

#include <QScrollArea>
#include <QStringList>
#include <cstdint>
#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace quorvik
{

class DriveSimulation;
class LinkPorts;
class ParameterTable;
class PortList;
class Ports;
class RecentFiles;
struct Lesson;
struct LinkTimings;

/** What the start page can have done, for whoever owns the engines. */
struct StartCommands {
    std::function<void()> goOnLine;                                   ///< over the port that is chosen
    std::function<void(std::int32_t modelCode, bool moves)> simulate; ///< starts a simulated drive
    std::function<void()> open;                                       ///< a settings file
    std::function<void()> mentor;                                     ///< the Basic Setup Mentor
    std::function<void(const Lesson &lesson)> learn;
    std::function<void(const QString &topic)> help;
};

/**
 * Stands in the frame while no window is open there: the ways into the work. What is on it has its own
 * commands elsewhere; nothing can be done here only, but for the simulated drive.
 */
class StartPage : public QScrollArea
{
    Q_OBJECT

public:
    /** @param ports what is there. */
    StartPage(const ParameterTable &table, const Ports &ports, const LinkTimings &timings,
              RecentFiles &recent, StartCommands commands, QWidget *parent);

    /** Marks the port that is chosen; 0 for none of the numbers. */
    void SetPort(int number);
    /** Whether the user has chosen this number here. */
    bool HasChosen(int number) const;
    /** What the link does now. @param sentence "On line with Com5: ..."; empty while it is off line. */
    void FollowLink(const QString &sentence);
    /** While the simulated drive starts nothing else can be chosen here. @param sentence how it stands. */
    void FollowSimulation(bool isStarting, const QString &sentence);

Q_SIGNALS:
    /** The user goes to a port in the list. */
    void PortChosen(int number);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QWidget *MakeConnect(const ParameterTable &table, const Ports &ports, const LinkTimings &timings);
    QWidget *MakeSimulation();
    QWidget *MakeFiles(RecentFiles &recent);
    QWidget *MakeSetUp();
    QWidget *MakeLessons();
    void ListRecent(RecentFiles &recent);
    void Enable();
    void Arrange();

    StartCommands commands_;
    QWidget *sheet_;
    QList<QWidget *> parts_; ///< in their order
    PortList *portList_ = nullptr;
    QPushButton *commandConnect_ = nullptr;
    QLabel *labelLink_ = nullptr;
    QComboBox *comboModel_ = nullptr;
    QCheckBox *checkMoves_ = nullptr;
    QPushButton *commandSimulate_ = nullptr;
    QLabel *labelSimulation_ = nullptr;
    QVBoxLayout *recentRows_ = nullptr;
    int columns_ = 0;
    bool isOnLine_ = false;
    bool isStarting_ = false;
};

} // namespace quorvik
