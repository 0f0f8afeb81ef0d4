#include "shell/MDIFormMain.h"
#include "shell/OpenWindows.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BoxMenu.h"
#include "blocks/DriveCircuit.h"
#include "desktop/HTMLHelp.h"
#include "map/FormMap.h"
#include "operator/OperatorLinks.h"
#include "platform/Guard.h"
#include "platform/Waiting.h"
#include "shell/DroppedFiles.h"
#include "shell/Icons.h"
#include "shell/NoticeStrip.h"
#include "shell/RecentFiles.h"
#include "shell/StatusBarMain.h"
#include "shell/StatusLines.h"
#include "shell/UndoEntries.h"
#include "shell/WindowCommands.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMenu>
#include <QShortcut>
#include <QVBoxLayout>

namespace quorvik
{

namespace
{

QMdiArea *MakeArea(QMainWindow *window)
{
    auto *area = new QMdiArea(window);
    area->setObjectName(QStringLiteral("MDIArea"));
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    auto *centre = new QWidget(window);
    auto *layout = new QVBoxLayout(centre);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    // Before it lies the start page, beside it a lesson.
    auto *ground = new QGridLayout;
    ground->setSpacing(0);
    ground->addWidget(area, 0, 0);
    ground->setColumnStretch(0, 1);
    layout->addLayout(ground, 1);
    window->setCentralWidget(centre);
    return area;
}

/** Above the area of the child windows. */
NoticeStrip *MakeNotices(Strip &strip, const QMainWindow *window)
{
    auto *notices = new NoticeStrip(strip, window->centralWidget());
    qobject_cast<QVBoxLayout *>(window->centralWidget()->layout())->insertWidget(0, notices);
    return notices;
}

} // namespace

MDIFormMain::MDIFormMain(const Surroundings &surroundings)
    : surroundings_(surroundings)
    , instance_(surroundings.lockFile)
    , asker_(surroundings.asker, *this)
    , engines_(surroundings.ForEngines(), asker_)
    , simulation_(engines_.link, surroundings.programFolder)
    , area_(MakeArea(this))
    , windows_(new WindowCommands(area_, forms_, this))
    , notices_(MakeNotices(strip_, this))
    , statusBar_(new StatusBarMain(this))
    , menus_(this)
    , desk_{engines_.table,
            engines_.states,
            engines_.trips,
            engines_.document,
            colors_,
            engines_.rules,
            engines_.guards,
            asker_,
            surroundings.settings,
            surroundings.help,
            forms_,
            [this](QWidget *form, bool activate) { windows_->ShowChild(form, activate); },
            [this] { ShowIOMentor(*this); },
            [this](int p) { return BlockOf(p); },
            [this](int p) { return RevealParameter(desk_, p); }}
{
    setObjectName(QStringLiteral("MDIFormMain"));
    desk_.ShowOnMap = [this](int p) { OpenMap(desk_, p); };
    desk_.TheCircuit = [this] { return &TheCircuit(); };
    desk_.MenuOf = [this](int p, QWidget *parent) { return MakeBoxMenu(desk_, p, parent, {}); };
    desk_.ShowInList = [this](int p) { ShowInList(*this, p); };
    desk_.CompareWithFactory = [this](int p) { ShowFactoryComparison(*this, p); };
    desk_.AddToTrend = [this](int p) { AddToTrend(*this, p); };
    desk_.RecordingOfTrip = [this](int tripNumber) { return engines_.tripTrend.PathOf(tripNumber); };
    desk_.ShowRecording = [this](const QString &path) { ShowRecording(*this, path); };
    // For every window of the program, boxes included.
    QApplication::setWindowIcon(IconOf(QStringLiteral("quorvik")));
    setStatusBar(statusBar_);
    SetTitle(engines_.document.Title());
    forms_.Add(this);

    ConnectEngines();
    ConnectCommands();
}

MDIFormMain::~MDIFormMain()
{
    // Which of them is in front does not matter any more as they go.
    windows_->disconnect(this);
    // The child windows speak to the engines when they go, and the engines are members that go before them.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete takeCentralWidget();
    while (forms_.Count() > 1)
        delete forms_.At(forms_.Count() - 1);
}

void MDIFormMain::SetTitle(const QString &title)
{
    // In a window's title these characters would stand for a mark of Qt's own.
    const QString mark = QStringLiteral("[*]");
    setWindowTitle(QString(title).replace(mark, mark + mark));
}

void MDIFormMain::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F1 && event->modifiers() == Qt::NoModifier)
        Guarded([this] { surroundings_.help.DisplayContents(this); });
    else
        QMainWindow::keyPressEvent(event);
}

void MDIFormMain::ConnectEngines()
{
    lines_ = std::make_unique<StatusLines>(*this, strip_);
    On(&engines_.document, &Document::TitleChanged, this, [this](const QString &title) { SetTitle(title); });
    On(&engines_.link, &DriveLink::ComStatusChanged, this, [this] { OnComStatusChange(); });
    On(&engines_.drive, &DriveOperations::FatalError, this, [] { QCoreApplication::exit(1); });
    On(&engines_.safeWrites, &SafeWrites::Reported, this, [this] { ShowWriteReport(*this); });
    On(&engines_.emulator, &DriveEmulator::StatusPanels, this,
       [this](const QString &driveStatus, const QString &driveModel) {
           lines_->ShowDriveState(driveStatus);
           statusBar_->SetDriveModel(driveModel);
       });
}

void MDIFormMain::ConnectCommands()
{
    On(menus_.Menu(QStringLiteral("mnuWindow")), &QMenu::aboutToShow, this,
       [this] { windows_->ListWindows(menus_.Menu(QStringLiteral("mnuWindow"))); });
    On(statusBar_, &StatusBarMain::PanelClick, this, [this](const QString &key) {
        if (key == QLatin1String("ComStatus"))
            ToggleComStatus();
        else if (key == QLatin1String("DriveFault"))
            ShowFaultLog(*this);
    });
    On(menus_.Entry(QStringLiteral("mnuOptionsAskBeforeRisky")), &QAction::toggled, this,
       [this](bool isChecked) { engines_.guards.Asking = isChecked; });
    On(menus_.Entry(QStringLiteral("mnuOptionsReconnect")), &QAction::toggled, this,
       [this](bool isChecked) { engines_.reconnection.BySelf = isChecked; });
    // The bar and the window in front share one set of mnemonics, and the window's own come first.
    On(windows_, &WindowCommands::FrontChanged, this, [this] { menus_.FollowFront(*windows_); });
    On(windows_, &WindowCommands::TakenOut, this, [this](QWidget *form) {
        QWidget *bar = menus_.Lend(form);
        auto *closing = new QShortcut(bar);
        closing->setKeys({QKeySequence(Qt::CTRL | Qt::Key_F4), QKeySequence(Qt::CTRL | Qt::Key_W)});
        On(closing, &QShortcut::activated, form, [form] { form->close(); });
        AddKeys(bar);
    });
    On(windows_, &WindowCommands::GoesBack, this, [this](QWidget *form) { menus_.TakeBack(form); });
    AddKeys(this);
    menus_.FollowFront(*windows_);
    new UndoEntries(engines_, menus_, this);
    const auto open = [this](const QString &path) { engines_.fileCommands.Open(path); };
    MakeStartPage(*new RecentFiles(engines_.document, surroundings_.settings, strip_,
                                   menus_.Menu(QStringLiteral("mnuFileRecent")), open, this));
    new DroppedFiles(this, strip_, open);
}

void MDIFormMain::AddKeys(QWidget *window)
{
    const auto addKey = [this, window](const QKeySequence &keys, auto handler) {
        On(new QShortcut(keys, window), &QShortcut::activated, this, handler);
    };
    addKey(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D), [this] { ShowDebug(*this); });
    addKey(QKeySequence(Qt::Key_F8), [this] {
        activateWindow();
        notices_->TakeFocus();
    });
    addKey(QKeySequence(Qt::CTRL | Qt::Key_F6), [this] { windows_->Activate(1); });
    addKey(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F6), [this] { windows_->Activate(-1); });
}

void MDIFormMain::OnComStatusChange()
{
    const bool isOnline = engines_.link.PortOpen();
    statusBar_->SetComStatus(isOnline);
    // Not only at the emulator's next tick: nobody knows it any more.
    if (!isOnline)
        lines_->ShowDriveState({});
    menus_.FollowLink(isOnline);
    FollowPort();
}

Circuit &MDIFormMain::TheCircuit()
{
    if (!circuit_)
        circuit_ = std::make_unique<DriveCircuit>(engines_.table);
    // Several windows ask in one turn of the event loop.
    constexpr qint64 freshMs = 20;
    if (!circuitAge_.isValid() || circuitAge_.elapsed() > freshMs) {
        circuit_->Get().SetOperatorLinks(OperatorLinks(desk_));
        circuit_->Get().Follow();
        circuitAge_.start();
    }
    return circuit_->Get();
}

QString MDIFormMain::BlockOf(int p)
{
    if (blocks_.isEmpty())
        blocks_ = BlockNames(engines_.table.UpperBound() + 1);
    return blocks_.value(p);
}

void MDIFormMain::ToggleComStatus()
{
    // One that has ended by itself lets go of the port only now, when the user asks for a drive again.
    if (!engines_.link.PortOpen() && !simulation_.IsRunning() && !simulation_.IsStarting())
        simulation_.End();
    engines_.drive.ToggleComStatus();
    // The click has flipped the check mark, also where the link stayed as it was.
    OnComStatusChange();
}

void MDIFormMain::Delay(int milliseconds)
{
    TimerDelay.setSingleShot(true);
    TimerDelay.start(milliseconds);
    PumpWhile([this] { return TimerDelay.isActive(); });
}

} // namespace quorvik
