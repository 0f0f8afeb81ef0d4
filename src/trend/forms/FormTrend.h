#pragma once

#include "desktop/Form.h"
#include "trend/TrendView.h"
#include "trend/forms/TrendSettings.h"

#include <QPointer>
#include <QTimer>
#include <functional>
#include <optional>

class QBoxLayout;
class QComboBox;
class QLabel;
class QPushButton;
class QSplitter;
class QTabWidget;

namespace quorvik
{

class CaptureBar;
class ChannelLegend;
class FiguresPanel;
class FormRecordings;
class TemplatesMenu;
class TrendHost;
class TrendPlot;
class TriggerPanel;
class TuningPage;
struct Desk;
struct KeptCapture;

/** The trend recorder's window: plots, channels, trigger, figures, recordings, and the tuning page. */
class FormTrend : public Form
{
    Q_OBJECT

public:
    static QString Name() { return QStringLiteral("FormTrend"); }

    FormTrend(Desk &desk, TrendHost &host);

    /** Adds a parameter as a fast channel, or a slow one where there is no room, and shows it. */
    void AddChannel(int p);
    /** Shows a recording's file. */
    void OpenRecording(const QString &path);
    /** Lays a recording's file over what is shown. */
    void OverlayRecording(const QString &path);

    TrendView &View() { return view_; }

    /** Lets the user choose the file to export to; the program shows a dialog. */
    std::function<std::optional<QString>(const QString &suffix, const QString &folder)> ChooseExport;

    QSize sizeHint() const override;

protected:
    void Unload() override;
    void showEvent(QShowEvent *event) override;

private:
    QWidget *MakeRecordingRow();
    QWidget *MakeStateRow();
    QWidget *MakeTabs();
    QWidget *MakeCommands();
    QPushButton *MakeButton(QBoxLayout *layout, const char *name, const QString &caption,
                            const QString &toolTip, std::function<void()> act);
    void FillExportMenu(QPushButton *button);
    void Restore();
    void Follow();
    void Refresh();

    TrendArrangement Arrangement() const;
    void Arrange(const TrendArrangement &channels);
    void RecordOrStop();
    void TakeCapture(const TrendDataPtr &capture);
    void ShowCapture(const KeptCapture &capture);
    void AskForNotes();
    void Export(const QString &suffix);
    void ShowRecordings();
    void ShowTuning(bool isWanted);
    TrendDataPtr Load(const QString &path);
    /** A sentence that needs no answer; it goes by itself. */
    void Tell(const QString &sentence);

    TrendHost &host_;
    TrendView view_;
    TrendPlot *plot_ = nullptr;
    ChannelLegend *legend_ = nullptr;
    FiguresPanel *figures_ = nullptr;
    TriggerPanel *trigger_ = nullptr;
    CaptureBar *captures_ = nullptr;
    TemplatesMenu *templates_ = nullptr;
    QTabWidget *tabs_ = nullptr;
    QPushButton *commandRecord_ = nullptr;
    QPushButton *commandPause_ = nullptr;
    QPushButton *commandFollow_ = nullptr;
    QPushButton *commandLive_ = nullptr;
    QPushButton *commandNoOverlay_ = nullptr;
    QPushButton *commandTuning_ = nullptr;
    QSplitter *above_ = nullptr;   ///< plots above the tabs
    QSplitter *beside_ = nullptr;  ///< these, and the tuning page at their right
    TuningPage *tuning_ = nullptr; ///< made when it is wanted first
    QComboBox *comboKeep_ = nullptr;
    QLabel *labelState_ = nullptr;
    QLabel *labelTold_ = nullptr;
    QPointer<FormRecordings> recordings_; ///< opened from here
    QTimer timerUpdateScreen_{this};
    QTimer timerTold_{this};
    QString shownPath_; ///< of the other recording that is shown
    bool isLaidOut_ = false;
    bool isClosing_ = false;
};

} // namespace quorvik
