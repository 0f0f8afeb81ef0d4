#pragma once

#include "platform/ComPortControl.h"
#include "platform/PortAddress.h"
#include "platform/PortTransport.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTimer>
#include <optional>

namespace quorvik
{

/**
 * A serial line that a server lends over the network. The host's name goes to the resolver when it is opened,
 * and not before.
 *
 * A raw one is taken for open when the server has let it stand for a moment: one whose port is in use accepts
 * the connection, says so in a line of text, and closes it.
 */
class NetworkTransport : public PortTransport
{
    Q_OBJECT

public:
    /** How long reaching it may take, agreement on the line's settings included, in milliseconds. */
    static constexpr int OpenLimitMs = 5000;
    /** How long a raw connection must stand before it counts, in milliseconds. */
    static constexpr int SettleMs = 100;

    /** For how long a connection that is closed at once is tried again: a server lets go of its port only a
     * moment after the last client has left. In milliseconds, and the pause between. */
    static constexpr int BusyLimitMs = 1500;
    static constexpr int BusyPauseMs = 200;

    explicit NetworkTransport(PortAddress address);
    ~NetworkTransport() override;

    void Open() override;
    void Close() override;
    QByteArray ReadAll() override;
    void ClearInput() override;
    void Write(const QByteArray &bytes) override;
    int RoundTripMs() const override { return roundTripMs_; }

private:
    enum class Step : std::uint8_t { Closed, Connecting, Settling, Waiting, Open };

    void Connect();
    void Connected();
    void Receive();
    void Reply(const QByteArray &answer);
    void Agree();
    void SocketEnded();
    void TimeOut();
    void End(Failure failure, const QString &sentence);
    QString SaidText() const;

    PortAddress address_;
    QTcpSocket socket_;
    std::optional<ComPortControl> control_;
    Step step_ = Step::Closed;
    QTimer limit_;
    QTimer settle_;
    QTimer again_;
    QElapsedTimer asked_;
    int roundTripMs_ = 1;
    QByteArray buffer_; ///< of the line, not fetched yet
    QByteArray said_;   ///< before it was open: mostly why it will not be
};

} // namespace quorvik
