#include "platform/MSComm.h"

#include "platform/NetworkTransport.h"
#include "platform/PortAddress.h"
#include "platform/SerialTransport.h"
#include "platform/Waiting.h"

#include <utility>

namespace quorvik
{

namespace
{

/** More than this is never kept; what arrives beyond it is lost, as in the port's own buffer. */
constexpr int InBufferSize = 1024;

} // namespace

MSComm::MSComm(QObject *parent)
    : QObject(parent)
    , DeviceOf([](int) { return QString(); })
{
}

MSComm::~MSComm() = default;

void MSComm::Prepare()
{
    if (open_)
        return;
    CancelPreparing();
    const QString device = DeviceOf(commPort_);
    const std::optional<PortAddress> address = PortAddress::Of(device);
    if (!address)
        return;
    preparedDevice_ = device;
    prepared_ = std::make_unique<NetworkTransport>(*address);
    connect(prepared_.get(), &PortTransport::OpenEnded, this, [this] {
        isPrepared_ = true;
        Q_EMIT PrepareEnded();
    });
    prepared_->Open();
}

void MSComm::CancelPreparing()
{
    const bool wasUnderWay = IsPreparing();
    if (prepared_) {
        prepared_->disconnect(this);
        prepared_->Close();
        // It may be telling something just now.
        prepared_.release()->deleteLater();
    }
    isPrepared_ = false;
    if (wasUnderWay)
        Q_EMIT PrepareEnded();
}

QString MSComm::SetPortOpen(bool open)
{
    if (open == open_)
        return {};
    buffer_.clear();
    if (open)
        return OpenNow();
    open_ = false;
    Retire();
    return {};
}

QString MSComm::OpenNow()
{
    const QString device = DeviceOf(commPort_);
    if (device.isEmpty()) {
        failure_ = Failure::NotPresent;
        return QStringLiteral(
                   "There is no port Com%1. Plug the adapter in, or choose another port with Options, "
                   "Communications.")
            .arg(commPort_);
    }
    std::unique_ptr<PortTransport> transport;
    if (!PortAddress::IsMeant(device)) {
        transport = std::make_unique<SerialTransport>(device, commPort_);
        transport->Open();
    } else {
        if (QString why = PortAddress::WhyNot(device); !why.isEmpty()) {
            failure_ = Failure::Other;
            return why;
        }
        if (!prepared_ || preparedDevice_ != device)
            Prepare();
        PumpWhile([this] { return IsPreparing(); });
        if (!prepared_) {
            failure_ = Failure::Other;
            return QStringLiteral("The connection to %1 was given up.").arg(device);
        }
        isPrepared_ = false;
        transport = std::move(prepared_);
        transport->disconnect(this);
    }
    failure_ = transport->OpenFailure();
    if (failure_ != Failure::None) {
        QString sentence = transport->Sentence();
        transport.release()->deleteLater();
        return sentence;
    }
    TakeOver(std::move(transport));
    return {};
}

void MSComm::TakeOver(std::unique_ptr<PortTransport> transport)
{
    transport_ = std::move(transport);
    open_ = true;
    connect(transport_.get(), &PortTransport::ReadyRead, this, &MSComm::Read);
    connect(transport_.get(), &PortTransport::Lost, this, &MSComm::Retire);
    if (isLowLatency_)
        transport_->SetLowLatency(true);
}

void MSComm::SetLowLatency(bool low)
{
    if (std::exchange(isLowLatency_, low) != low && transport_)
        transport_->SetLowLatency(low);
}

QByteArray MSComm::Input()
{
    return std::exchange(buffer_, {});
}

void MSComm::ClearInput()
{
    if (transport_)
        transport_->ClearInput();
    buffer_.clear();
}

void MSComm::Output(const QByteArray &bytes)
{
    if (transport_)
        transport_->Write(bytes);
}

void MSComm::Read()
{
    buffer_ += transport_->ReadAll();
    if (buffer_.size() > InBufferSize)
        buffer_.truncate(InBufferSize);
    if (rThreshold_ > 0 && buffer_.size() >= rThreshold_)
        Raise();
}

void MSComm::Raise()
{
    ++raising_;
    commEvent_ = EvReceive;
    Q_EMIT OnComm();
    if (--raising_ > 0)
        return;
    for (auto &transport : retired_)
        transport.release()->deleteLater();
    retired_.clear();
}

void MSComm::Retire()
{
    if (!transport_)
        return;
    transport_->disconnect(this);
    transport_->Close();
    // While OnComm is being raised its port is still in use further up, even after a nested event loop.
    if (raising_ > 0)
        retired_.push_back(std::move(transport_));
    else
        transport_.release()->deleteLater();
}

} // namespace quorvik
