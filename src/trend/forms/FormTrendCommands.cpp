// What the window's commands do, and what it follows.

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendStore.h"
#include "trend/forms/CaptureBar.h"
#include "trend/forms/ChannelLegend.h"
#include "trend/forms/FiguresPanel.h"
#include "trend/forms/FormRecordings.h"
#include "trend/forms/FormTrend.h"
#include "trend/forms/StateText.h"
#include "trend/forms/TitleDialog.h"
#include "trend/forms/TrendExport.h"
#include "trend/forms/TrendHost.h"
#include "trend/forms/TrendPlot.h"
#include "trend/forms/TriggerPanel.h"
#include "trend/forms/TriggerText.h"
#include "trend/forms/TuningPage.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int ToldMs = 15000;

} // namespace

void FormTrend::Restore()
{
    TrendRecorder &recorder = host_.Recorder();
    const SettingsStore &settings = desk().settings;
    const TrendArrangement kept = LoadArrangement(settings);
    if (recorder.Data().tracks.empty()) {
        recorder.SetKeepMs(LoadKeepMs(settings, recorder.KeepMs()));
        Arrange(kept);
    } else {
        std::vector<TrendCurve> curves;
        for (const ArrangedChannel &channel : kept)
            curves.push_back(channel.curve);
        view_.Arrange(std::move(curves));
    }
    if (recorder.Setting().kind == TriggerKind::None)
        if (const TriggerSetting trigger = LoadTrigger(settings); trigger.kind != TriggerKind::None)
            trigger_->SetSetting(trigger);
}

void FormTrend::Unload()
{
    isClosing_ = true;
    timerUpdateScreen_.stop();
    // It opens what it lists in this window.
    if (recordings_ != nullptr)
        recordings_->close();
    // Also puts back what a step has changed.
    ShowTuning(false);
    host_.Recorder().Stop();
    if (!view_.IsLive())
        view_.ShowLive();
    SettingsStore &settings = desk().settings;
    StoreArrangement(settings, Arrangement());
    StoreKeepMs(settings, host_.Recorder().KeepMs());
    StoreTrigger(settings, trigger_->LastSetting());
}

TrendArrangement FormTrend::Arrangement() const
{
    TrendArrangement channels;
    for (const TrendTrack &track : host_.Recorder().Data().tracks) {
        const int p = track.channel.param;
        const TrendCurve *curve = view_.CurveOf(p);
        channels.push_back({track.channel.pace, curve == nullptr
                                                    ? TrendCurve{.param = p, .colour = int(channels.size())}
                                                    : *curve});
    }
    return channels;
}

void FormTrend::Arrange(const TrendArrangement &channels)
{
    if (!view_.IsLive())
        view_.ShowLive();
    std::vector<std::pair<int, TrendPace>> wanted;
    std::vector<TrendCurve> curves;
    for (const auto &[pace, curve] : channels) {
        wanted.emplace_back(curve.param, pace);
        curves.push_back(curve);
    }
    host_.Recorder().SetChannels(wanted);
    view_.Arrange(std::move(curves));
}

void FormTrend::Follow()
{
    const TrendRecorder &recorder = host_.Recorder();
    commandRecord_->setText(recorder.IsRunning() ? QStringLiteral("Stop &Recording")
                                                 : QStringLiteral("&Record"));
    commandRecord_->setToolTip(
        recorder.IsRunning()
            ? QStringLiteral("Ends the recording; it stays under Recordings (Ctrl+R)")
            : QStringLiteral("Begins a new recording; the last one stays under Recordings (Ctrl+R)"));
    commandPause_->setChecked(view_.IsFrozen());
    commandPause_->setEnabled(!view_.IsOther());
    commandFollow_->setChecked(view_.Follows());
    commandLive_->setVisible(view_.IsOther());
    commandNoOverlay_->setVisible(!view_.Overlays().empty());
    captures_->SetShown(view_.IsOther() ? &view_.Shown() : nullptr);
    if (view_.IsLive())
        shownPath_.clear();
    int index = 0;
    while (index < comboKeep_->count() - 1 && comboKeep_->itemData(index).toInt() < recorder.KeepMs())
        ++index;
    comboKeep_->setCurrentIndex(index);
    Refresh();
}

void FormTrend::Refresh()
{
    labelState_->setText(StateText(host_.Recorder(), view_, desk().table.PortOpen()));
    legend_->Refresh();
    figures_->Refresh();
}

void FormTrend::AddChannel(int p)
{
    legend_->AddChannel(p);
}

void FormTrend::RecordOrStop()
{
    TrendRecorder &recorder = host_.Recorder();
    if (recorder.IsRunning()) {
        recorder.Stop();
        return;
    }
    if (recorder.Data().tracks.empty()) {
        tabs_->setCurrentWidget(legend_);
        legend_->FocusAdding();
        Tell(QStringLiteral("Add a channel first: there is nothing to record."));
        return;
    }
    if (!view_.IsLive())
        view_.ShowLive();
    recorder.Start();
}

void FormTrend::TakeCapture(const TrendDataPtr &capture)
{
    auto titled = std::make_shared<TrendData>(*capture);
    TriggerSetting trigger = host_.Recorder().Setting();
    if (std::ranges::any_of(titled->marks, [&](const TrendMark &mark) {
            return mark.timeUs == titled->triggerUs && mark.text == TriggerByHand();
        }))
        trigger.kind = TriggerKind::ByHand;
    const TrendTrack *track = titled->TrackOf(trigger.param);
    titled->head.title =
        QStringLiteral("Capture: %1").arg(TriggerText(trigger, track == nullptr ? nullptr : &track->channel));
    const QString path = host_.Store().Save(titled, RecordingKind::Capture);
    captures_->Add(titled, path);
    // Whoever looks into another recording is not torn out of it.
    const bool isLookingElsewhere =
        view_.IsOther() && std::ranges::none_of(captures_->Captures(), [this](const KeptCapture &kept) {
            return kept.data.get() == &view_.Shown();
        });
    if (!isClosing_ && !isLookingElsewhere)
        ShowCapture(captures_->Captures().back());
}

void FormTrend::ShowCapture(const KeptCapture &capture)
{
    view_.Show(capture.data);
    shownPath_ = capture.path;
}

TrendDataPtr FormTrend::Load(const QString &path)
{
    QString failure;
    TrendDataPtr loaded = host_.Store().Load(path, &failure);
    if (!loaded)
        Tell(failure);
    return loaded;
}

void FormTrend::OpenRecording(const QString &path)
{
    if (const TrendDataPtr recording = Load(path)) {
        view_.Show(recording);
        shownPath_ = path;
    }
}

void FormTrend::OverlayRecording(const QString &path)
{
    if (const TrendDataPtr recording = Load(path))
        view_.AddOverlay(recording, RecordingText(*recording));
}

void FormTrend::ShowRecordings()
{
    if (recordings_ == nullptr) {
        const QPointer<FormTrend> self = this;
        recordings_ = new FormRecordings(desk(), host_, [self](const QString &path, bool asOverlay) {
            if (!self)
                return;
            if (asOverlay)
                self->OverlayRecording(path);
            else
                self->OpenRecording(path);
            // The list may cover the plots.
            self->desk().ShowChild(self, true);
        });
    }
    desk().ShowChild(recordings_, true);
}

void FormTrend::AskForNotes()
{
    const TrendHead &head = view_.Shown().head;
    const QString path = view_.IsOther() ? shownPath_ : host_.Store().RunningPath();
    if (path.isEmpty()) {
        Tell(QStringLiteral("Nothing is recorded yet."));
        return;
    }
    const bool isLive = !view_.IsOther();
    const QPointer<FormTrend> self = this;
    TitleDialog dialog(desk(), this, QStringLiteral("Title and Notes"), head.title, &head.notes);
    if (dialog.exec() != QDialog::Accepted || !self)
        return;
    if (isLive) {
        host_.Recorder().SetTitle(dialog.Title());
        host_.Recorder().SetNotes(dialog.Notes());
    }
    const QString failure = host_.Store().Keep(path, dialog.Title(), dialog.Notes());
    Tell(failure.isEmpty() ? QStringLiteral("Kept as \"%1\".").arg(dialog.Title()) : failure);
}

void FormTrend::Export(const QString &suffix)
{
    const QPointer<FormTrend> self = this;
    const auto recording = std::make_shared<const TrendData>(view_.Shown());
    const std::optional<QString> path = ChooseExport(suffix, FilePath(desk().document.FileName));
    if (!path || !self)
        return;
    TrendExportResult result;
    if (suffix == QStringLiteral("csv")) {
        result = ExportTrendCsv(*path, recording, desk().asker);
    } else {
        const QString failure = plot_->Export(*path);
        result = {failure.isEmpty() ? QStringLiteral("Exported to \"%1\".").arg(FileTitle(*path)) : failure,
                  !failure.isEmpty()};
    }
    if (!self)
        return;
    if (result.isFailed)
        desk().asker.MsgBox(result.sentence, MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
    else
        Tell(result.sentence);
}

void FormTrend::ShowTuning(bool isWanted)
{
    if (isWanted && tuning_ == nullptr) {
        tuning_ = new TuningPage(desk(), host_, beside_);
        beside_->addWidget(tuning_);
        On(tuning_, &TuningPage::OverlayWanted, this,
           [this](const TrendDataPtr &answer, const QString &title) {
               view_.RemoveOverlays();
               view_.AddOverlay(answer, title);
           });
    }
    if (tuning_ != nullptr)
        tuning_->setVisible(isWanted);
    if (isWanted)
        tuning_->setFocus(Qt::ShortcutFocusReason);
}

void FormTrend::Tell(const QString &sentence)
{
    labelTold_->setText(sentence);
    labelTold_->show();
    timerTold_.start(ToldMs);
    QAccessibleEvent event(labelTold_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace quorvik
