#include "link/ScriptedPeer.h"

#include <cstdlib>

namespace quorvik::testing
{

namespace
{

int Field(const QByteArray &bytes, int at)
{
    return int(quint8(bytes.at(at))) << 8 | quint8(bytes.at(at + 1));
}

} // namespace

ScriptedPeer::ScriptedPeer()
    : Answer([this](const QByteArray &frame) { return DriveAnswer(frame); })
{
    PlugIn();
}

void ScriptedPeer::PlugIn()
{
    terminal_.emplace();
    if (!terminal_->Open().isEmpty() || !terminal_->PublishAt(Device()).isEmpty())
        std::abort();
    notifier_ = std::make_unique<QSocketNotifier>(terminal_->Descriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { Receive(); });
}

void ScriptedPeer::PullOut()
{
    notifier_.reset();
    terminal_.reset();
}

void ScriptedPeer::Receive()
{
    pending_.append(terminal_->Read());
    while (!pending_.isEmpty()) {
        qsizetype length = 1;
        if (pending_.at(0) == 2)
            length = pending_.size() > 1 && pending_.at(1) == 1 ? 7 : 5;
        if (pending_.size() < length)
            return;
        Frames.append(pending_.left(length));
        pending_.remove(0, length);
        Send(Answer(Frames.last()));
    }
}

QByteArray ScriptedPeer::DriveAnswer(const QByteArray &frame)
{
    if (frame == Ack)
        return ValueReply(Values[++current_]);
    if (frame.size() < 5)
        return {};
    const int p = Field(frame, 2);
    switch (frame.at(1)) {
    case 0:
        current_ = p;
        return ValueReply(Values[p]);
    case 1:
        Values[p] = Field(frame, 4);
        return Ack;
    default:
        return PropsReply(0, LastParam, 0, 0, Values[p]);
    }
}

} // namespace quorvik::testing
