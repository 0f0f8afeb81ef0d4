#include "blocks/CustomRows.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"

#include "desktop/TypeToChoose.h"
#include "desktop/ValueBox.h"
#include "platform/Numbers.h"
#include "platform/SettingsStore.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <algorithm>
#include <array>
#include <cmath>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr int Slots = 20;
constexpr int ColumnLength = Slots / 2;
constexpr int WholeCaption = 20;

constexpr std::array<int, Slots> CustomDefaults = {
    DriveModel,
    MotorRPM,
    ArmatureVolts,
    ArmatureAmps,
    FieldVolts,
    FieldAmps,
    VelLoopOutput,
    ConductionAngle,
    Reference0,
    Reference1,
    Reference2,
    Reference3,
    JogReference,
    ForwardMaxSpeed,
    ReverseMaxSpeed,
    PositiveILimit,
    NegativeILimit,
    NameplateMotorI,
    NameplateMotorVoltage,
    FeedbackSelect,
};

const QString &Section()
{
    static const QString section = QStringLiteral("Custom");
    return section;
}

/** Text that is no whole number counts as missing. */
int SavedNumber(const SettingsStore &settings, int row)
{
    bool whole = false;
    const int saved = settings.GetSetting(Section(), QString::number(row)).toInt(&whole);
    return whole ? saved : CustomDefaults.at(std::size_t(row));
}

class CustomSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

    QString FullCaption(int p) const { return NumberAndName(QString::number(p), values()[p].Name); }
    QString EntryText(int p) const { return QString::number(p) + u' ' + values()[p].Name; }
    /** The room for the list that takes the place of a row's caption while the row is edited. */
    QRectF ListOf(int row) const
    {
        const QSizeF size(listWidth_, BoxSize(0).height());
        return {{ColumnX(row) + listX_, RowY(row) - size.height() / 2}, size};
    }

protected:
    void Draw(Drawing &d) override
    {
        QString longest;
        QString longestEntry;
        for (int p = 0; InTable(p); ++p) {
            longest = ruler().Wider(longest, Shortened(FullCaption(p), WholeCaption));
            longestEntry = ruler().Wider(longestEntry, EntryText(p));
        }
        listWidth_ = std::ceil(ruler().list(longestEntry));
        const double captions = std::max(std::ceil(ruler().text(longest)), listWidth_) + 1;
        const double frameWidth = captions + BoxSize(0).width() + 3;
        columnDistance_ = frameWidth + 2;
        listX_ = 1.5 + captions - listWidth_ - 0.8;
        for (int row = 0; row < Slots; ++row) {
            SetLongestCaption(row, longest);
            Box(row, {ColumnX(row) + captions + 1.5, RowY(row)}, CaptionAt::Left);
        }
        const double height = RowY(ColumnLength - 1) + 3;
        d.Frame({0, 0, frameWidth, height});
        d.Frame({columnDistance_, 0, frameWidth, height});
    }

private:
    static double RowY(int row) { return 3 + row % ColumnLength * 4.2; }
    double ColumnX(int row) const { return row < ColumnLength ? 0 : columnDistance_; }

    double columnDistance_ = 0; ///< from the left edge of one column to that of the next, in cells
    double listX_ = 0;          ///< from a column's left edge
    double listWidth_ = 0;
};

class FormCustom final : public BlockForm
{
public:
    using BlockForm::BlockForm;

    void Replace(int row, int p)
    {
        RemoveInterest(RowParam(row));
        ShowParameter(row, p);
        AddInterest(p);
        // The combo, where it is shown, follows its row.
        if (row == customSlot_)
            Label1_DblClick(row);
    }
    int ParameterOf(int row) const { return RowParam(row); }

protected:
    void Extend() override
    {
        comboSelectParameter_ = new QComboBox(&view());
        comboSelectParameter_->setObjectName(QStringLiteral("ComboSelectParameter"));
        comboSelectParameter_->setAccessibleName(QStringLiteral("Parameter of the row"));
        TypeToChoose(comboSelectParameter_);
        comboSelectParameter_->hide();
        On(comboSelectParameter_, &QComboBox::activated, this, [this] { ComboSelectParameter_Click(); });
        view().Place(comboSelectParameter_, TheSheet().ListOf(0));
        for (int row = 0; row < Slots; ++row)
            Caption(row)->installEventFilter(this);
        for (int row = 0; row < Slots; ++row) {
            ShowParameter(row, SavedNumber(desk().settings, row));
            AddInterest(RowParam(row));
        }
        checkEdit_ = new QCheckBox(QStringLiteral("Edit"), this);
        checkEdit_->setObjectName(QStringLiteral("CheckEdit"));
        On(checkEdit_, &QCheckBox::clicked, this, [this] { CheckEdit_Click(); });
        AddToButtonRow(checkEdit_);
        auto *defaults = AddButton(QStringLiteral("CommandDefault"), QStringLiteral("&Default"),
                                   QStringLiteral("Set Custom Window Settings to Factory Defualt"));
        On(defaults, &QPushButton::clicked, this, [this] { CommandDefault_Click(); });
    }

    /** Only this way of closing saves the choice and releases the rows; after any other their read interest
     * stays. */
    void CommandClose_Click() override
    {
        for (int row = 0; row < Slots; ++row) {
            RemoveInterest(RowParam(row));
            desk().settings.SaveSetting(Section(), QString::number(row), QString::number(RowParam(row)));
        }
        BlockForm::CommandClose_Click();
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        Guarded([&] { HandleCaptionEvent(watched, event); });
        return BlockForm::eventFilter(watched, event);
    }

private:
    const CustomSheet &TheSheet() const { return static_cast<const CustomSheet &>(Sheet()); }

    QLabel *Caption(int row) const { return StaticLabel(ControlName("Label1", row)); }

    void AddInterest(int p)
    {
        if (InTable(p))
            desk().table.AddReadInterest(p);
    }

    void RemoveInterest(int p)
    {
        if (InTable(p))
            desk().table.RemoveReadInterest(p);
    }

    void ShowParameter(int row, int p)
    {
        SetRowParam(row, p);
        if (!InTable(p)) {
            SetRowCaption(row, {}, {});
            return;
        }
        const QString full = TheSheet().FullCaption(p);
        SetRowCaption(row, Shortened(full, WholeCaption), full);
    }

    void HandleCaptionEvent(QObject *watched, QEvent *event)
    {
        auto *caption = qobject_cast<QLabel *>(watched);
        if (!caption)
            return;
        const auto isEnter = [&] {
            const int key = static_cast<QKeyEvent *>(event)->key();
            return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
        };
        switch (event->type()) {
        case QEvent::MouseButtonDblClick:
            Label1_DblClick(RowOf(caption));
            break;
        case QEvent::KeyPress:
            if (isEnter())
                Label1_DblClick(RowOf(caption));
            break;
        case QEvent::FocusIn:
        case QEvent::FocusOut: {
            const bool focused = event->type() == QEvent::FocusIn;
            caption->setAutoFillBackground(focused);
            caption->setBackgroundRole(focused ? QPalette::Highlight : QPalette::NoRole);
            caption->setForegroundRole(focused ? QPalette::HighlightedText : QPalette::NoRole);
            break;
        }
        default:
            break;
        }
    }

    int RowOf(const QLabel *caption) const
    {
        int row = 0;
        while (Caption(row) != caption)
            ++row;
        return row;
    }

    void CheckEdit_Click()
    {
        const bool editing = checkEdit_->isChecked();
        for (int row = 0; row < Slots; ++row) {
            Caption(row)->setFocusPolicy(editing ? Qt::StrongFocus : Qt::NoFocus);
            Caption(row)->setCursor(editing ? Qt::PointingHandCursor : Qt::ArrowCursor);
            Caption(row)->show();
        }
        comboSelectParameter_->setVisible(editing);
        if (editing)
            Label1_DblClick(customSlot_);
    }

    void Label1_DblClick(int row)
    {
        customParam_ = RowParam(row);
        if (!checkEdit_->isChecked())
            return;
        Caption(customSlot_)->show();
        customSlot_ = row;
        view().Place(comboSelectParameter_, TheSheet().ListOf(row));
        comboSelectParameter_->setFocus();
        Caption(row)->hide();
        comboSelectParameter_->clear();
        for (int p = 0; p <= desk().table.LastParam; ++p)
            comboSelectParameter_->addItem(TheSheet().EntryText(p));
        const bool listed = customParam_ >= 0 && customParam_ < comboSelectParameter_->count();
        comboSelectParameter_->setCurrentIndex(listed ? customParam_ : 0);
    }

    void ComboSelectParameter_Click()
    {
        RemoveInterest(customParam_);
        const int chosen = comboSelectParameter_->currentIndex();
        ShowParameter(customSlot_, chosen);
        AddInterest(chosen);
        customParam_ = chosen;
    }

    void CommandDefault_Click()
    {
        for (int row = 0; row < Slots; ++row) {
            RemoveInterest(RowParam(row));
            ShowParameter(row, CustomDefaults.at(std::size_t(row)));
            AddInterest(RowParam(row));
        }
        // The combo, where it is shown, follows its row.
        Label1_DblClick(customSlot_);
    }

    QCheckBox *checkEdit_ = nullptr;
    QComboBox *comboSelectParameter_ = nullptr;
    int customSlot_ = 0;  ///< CustomSlot: the row being changed
    int customParam_ = 0; ///< CustomParam: its present number
};

FormCustom *OpenCustom(const Desk &desk)
{
    for (int position = 1; position < desk.forms.Count(); ++position)
        if (auto *form = dynamic_cast<FormCustom *>(desk.forms.At(position)))
            return form;
    return nullptr;
}

BlockForm *MakeCustom(Desk &desk, const BlockDescriptor &descriptor, int member)
{
    BlockForm *form = MakeBlock<FormCustom>(desk, descriptor, member);
    // The hidden list is the first control here, and takes no focus.
    form->findChild<ValueBox *>(ControlName("Text1", 0))->setFocus();
    return form;
}

} // namespace

std::vector<int> CustomRows(const Desk &desk)
{
    const FormCustom *open = OpenCustom(desk);
    std::vector<int> rows;
    rows.reserve(Slots);
    for (int row = 0; row < Slots; ++row)
        rows.push_back(open ? open->ParameterOf(row) : SavedNumber(desk.settings, row));
    return rows;
}

void PutInCustomRow(Desk &desk, int row, int p)
{
    if (FormCustom *open = OpenCustom(desk))
        open->Replace(row, p);
    desk.settings.SaveSetting(Section(), QString::number(row), QString::number(p));
    JumpTo(desk, QString::fromLatin1(BlockCustom.window), p);
}

constexpr BlockDescriptor BlockCustom = {.form = "FormCustom",
                                         .window = "Custom",
                                         .helpTopic = "Custom.htm",
                                         .sheet = MakeSheet<CustomSheet>,
                                         .make = MakeCustom,
                                         .freeRows = Slots,
                                         .timerInterval = 400};

} // namespace quorvik
