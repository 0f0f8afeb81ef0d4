#include "blocks/BlockForm.h"

#include "blocks/FaultTexts.h"
#include "blocks/FormTripRecord.h"
#include "model/FaultRecord.h"

#include "platform/RuntimeFailure.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <cmath>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {FaultReset, PowerOnReset, LatchedFault, PresentFault};

class FaultLogSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

    /** The room for the names of the faults in a word, below its box. */
    QRectF NamesOf(int row) const
    {
        return {Inset, RowOf(row).rect.bottom() + 0.2, FaultsWidth - 2 * Inset, NamesHeight};
    }

protected:
    void Draw(Drawing &d) override
    {
        const QRectF faults = DrawFaults(d);
        Table({faults.right() + 6, 0}, QStringLiteral("Reset"), {FaultReset, PowerOnReset});
        for (int p = FaultLog::First; p < FaultLog::First + FaultLog::Records * FaultLog::Step; ++p)
            AddExtraInterest(p);
    }

private:
    static constexpr double FaultsWidth = 54; ///< two lines hold the names of all faults
    static constexpr double NamesHeight = 4.4;
    static constexpr double Inset = 1.5;

    /** The two words, each with room for the names of its faults below. */
    QRectF DrawFaults(Drawing &d)
    {
        constexpr double head = 3.5;
        constexpr double boxHeight = 3;
        constexpr double pitch = boxHeight + NamesHeight + 1;
        const QRectF frame(0, 0, FaultsWidth, head + 2 * pitch);
        double y = head;
        for (const int row : {PresentFault, LatchedFault}) {
            const double captions = ruler().text(RowOf(row).LabelText());
            Box(row, {Inset + std::ceil(captions) + 1.5, y + boxHeight / 2}, CaptionAt::Left);
            y += pitch;
        }
        d.Frame(frame, QStringLiteral("Faults"));
        return frame;
    }
};

class FormFaultLog final : public BlockForm
{
public:
    using BlockForm::BlockForm;

    /** Puts the log and the remedies above the sheet, where they take the room that the window has. */
    void AddTexts()
    {
        auto *all = static_cast<QVBoxLayout *>(layout());
        auto *log = new QHBoxLayout;
        log->addLayout(MakeMarks());
        log->addWidget(picture_, 1);
        all->insertLayout(0, log, 1);
        auto *caption = new QLabel(QStringLiteral("What it means, what to check"), this);
        caption->setObjectName(QStringLiteral("LabelRemedies"));
        all->insertWidget(1, caption);
        all->insertWidget(2, textRemedies_, 2);
        resize(sizeHint());
    }

    QSize sizeHint() const override
    {
        // Load() asks as well, before the texts are there.
        if (!layout() || layout()->count() <= Buttons)
            return BlockForm::sizeHint();
        const QMargins margins = layout()->contentsMargins();
        const QSize buttons = layout()->itemAt(Buttons)->sizeHint();
        const QSize sheet = View().UsualSize();
        const int texts =
            layout()->itemAt(0)->sizeHint().height() + (RemedyLines + 1) * fontMetrics().lineSpacing();
        return {std::max(sheet.width(), buttons.width()) + margins.left() + margins.right(),
                texts + sheet.height() + buttons.height() + Buttons * layout()->spacing() + margins.top() +
                    margins.bottom()};
    }

protected:
    void Extend() override
    {
        MakeLog();
        textRemedies_ = new RemedyText(this);
        const auto &faults = static_cast<const FaultLogSheet &>(Sheet());
        for (const int row : {PresentFault, LatchedFault}) {
            auto *names = new FaultNamesLabel(&view());
            names->setObjectName(row == PresentFault ? QStringLiteral("LabelPresentFaults")
                                                     : QStringLiteral("LabelLatchedFaults"));
            view().Place(names, faults.NamesOf(row));
            (row == PresentFault ? labelPresent_ : labelLatched_) = names;
        }
        commandClearFault_ = AddButton(QStringLiteral("CommandClearFault"), QStringLiteral("&Clear Fault"),
                                       QStringLiteral("Clears the latched fault in the drive"));
        On(commandClearFault_, &QPushButton::clicked, this, [this] {
            const Intent intent(desk().table, Origin::DriveCommand);
            Write(Param::ClearFault, 1);
        });
        // The drive has no command behind this button; it is there and does nothing.
        AddButton(QStringLiteral("CommandClearFaultLog"), QStringLiteral("Clear Fault Log"));
        QPushButton *atTheTrip =
            AddButton(QStringLiteral("CommandAtTheTrip"), QStringLiteral("At the Tri&p..."),
                      QStringLiteral("Shows what stood in the control path when the drive tripped"));
        On(atTheTrip, &QPushButton::clicked, this, [this] { OpenTripRecord(desk()); });
    }

    void Tick() override
    {
        commandClearFault_->setEnabled(RowValue(LatchedFault) != 0);
        labelPresent_->ShowFaults(RowValue(PresentFault));
        labelLatched_->ShowFaults(RowValue(LatchedFault));
        QString log;
        std::optional<RuntimeFailure> failure;
        for (int record = 0; record < FaultLog::Records; ++record) {
            const int base = BaseOf(record);
            // A bad day in one record is told, and hides neither its faults nor the other records.
            try {
                if (!IsEmptyRecord(desk().table, base))
                    log += GetFaultData(desk().table, base);
            } catch (const RuntimeFailure &badDay) {
                failure = badDay;
                log += GetFaultData(desk().table, base, QStringLiteral("no day"));
            }
            log += QStringLiteral("\r\n");
        }
        // What the user scrolled to or selected stays while the log does.
        if (log != log_) {
            log_ = log;
            const int record = textFaultLog_->textCursor().blockNumber();
            textFaultLog_->setPlainText(log);
            textFaultLog_->setTextCursor(QTextCursor(textFaultLog_->document()->findBlockByNumber(record)));
        }
        ShowRemedies();
        if (failure)
            throw RuntimeFailure(*failure);
    }

private:
    static constexpr int RemedyLines = 9;
    static constexpr int Buttons = 4; ///< their place below log, remedies and sheet

    static int BaseOf(int record) { return FaultLog::First + record * FaultLog::Step; }

    void MakeLog()
    {
        picture_ = new QFrame(this);
        picture_->setObjectName(QStringLiteral("Picture1"));
        picture_->setFrameShape(QFrame::StyledPanel);
        textFaultLog_ = new QPlainTextEdit(picture_);
        textFaultLog_->setObjectName(QStringLiteral("TextFaultLog"));
        textFaultLog_->setAccessibleName(QStringLiteral("Fault log, most recent first"));
        textFaultLog_->setReadOnly(true);
        // The arrow keys reach a record, whose faults are explained below.
        textFaultLog_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        textFaultLog_->setTabChangesFocus(true);
        textFaultLog_->setFrameShape(QFrame::NoFrame);
        textFaultLog_->setLineWrapMode(QPlainTextEdit::NoWrap);
        textFaultLog_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        textFaultLog_->setMinimumHeight(HeightOfLines());
        On(textFaultLog_, &QPlainTextEdit::cursorPositionChanged, this, [this] { ShowRemedies(); });
        auto *layout = new QHBoxLayout(picture_);
        layout->setContentsMargins({});
        layout->addWidget(textFaultLog_);
    }

    /** The height of the records with a scroll bar below them. */
    int HeightOfLines() const
    {
        return int(2 * textFaultLog_->document()->documentMargin()) +
               FaultLog::Records * textFaultLog_->fontMetrics().lineSpacing() +
               textFaultLog_->horizontalScrollBar()->sizeHint().height() + 2;
    }

    /** Marks the first and the last line. */
    QLayout *MakeMarks()
    {
        const int line = textFaultLog_->fontMetrics().lineSpacing();
        const auto mark = [&](const char *name, const QString &text) {
            auto *label = new QLabel(text, this);
            label->setObjectName(QString::fromLatin1(name));
            label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            label->setFixedHeight(line);
            return label;
        };
        auto *arrow = new DownArrow(this);
        arrow->setFixedSize(2 * line, (FaultLog::Records - 2) * line);
        auto *marks = new QVBoxLayout;
        marks->setSpacing(0);
        marks->setContentsMargins(
            0, int(textFaultLog_->document()->documentMargin()) + picture_->frameWidth(), 0, 0);
        marks->addWidget(mark("LabelLatest", QStringLiteral("Most Recent")));
        marks->addWidget(arrow, 0, Qt::AlignRight);
        marks->addWidget(mark("Label2", QStringLiteral("Oldest")));
        marks->addStretch();
        return marks;
    }

    /** Explains what is latched, what is present, and the record in which the cursor stands. */
    void ShowRemedies()
    {
        std::vector<ToldFaults> told{{RowValue(LatchedFault), QStringLiteral("latched")},
                                     {RowValue(PresentFault), QStringLiteral("present")}};
        const int record = textFaultLog_->textCursor().blockNumber();
        if (record < FaultLog::Records)
            told.push_back({desk().table.Value(BaseOf(record)), QStringLiteral("record %1").arg(record + 1)});
        textRemedies_->Explain(told);
        QTextEdit::ExtraSelection line;
        line.format.setProperty(QTextFormat::FullWidthSelection, true);
        line.format.setBackground(palette().alternateBase());
        line.cursor = textFaultLog_->textCursor();
        line.cursor.clearSelection();
        textFaultLog_->setExtraSelections({line});
    }

    QFrame *picture_ = nullptr;
    QPlainTextEdit *textFaultLog_ = nullptr;
    RemedyText *textRemedies_ = nullptr;
    FaultNamesLabel *labelPresent_ = nullptr;
    FaultNamesLabel *labelLatched_ = nullptr;
    QPushButton *commandClearFault_ = nullptr;
    QString log_;
};

BlockForm *MakeFaultLog(Desk &desk, const BlockDescriptor &descriptor, int member)
{
    auto *form = new FormFaultLog(desk, descriptor, member);
    form->Load();
    form->AddTexts();
    return form;
}

} // namespace

constexpr BlockDescriptor BlockFaultLog = {.form = "FormFaultLog",
                                           .window = "Fault Log",
                                           .helpTopic = "Fault Log.htm",
                                           .rows = Rows,
                                           .sheet = MakeSheet<FaultLogSheet>,
                                           .make = MakeFaultLog};

} // namespace quorvik
