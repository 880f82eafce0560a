#include "cli/CliCommand.h"
#include "cli/CliSession.h"
#include "core/link/WireFormat.h"

#include <QTimer>

namespace velora::cli {

namespace {

// A command the drive need not answer (reset, monitor poll) gets this long for a reply.
constexpr int UnsupervisedWaitMs = 1000;
// After the end-of-transmission notice of a command to all axes.
constexpr int BroadcastSettleMs = 20;

ExitCode sendText(CliSession& session, const CliArgs& args) {
    const QString text = args.positional.value(0);
    if (const ExitCode opened = session.openLink(); opened != ExitCode::Ok)
        return opened;
    LinkEngine& engine = session.engine();
    // Told after the dispatcher: an error reply has already ended the run with its message.
    // A reply that does not answer the text (another axis, another code) is not its answer.
    QObject::connect(engine.transport(), &Transport::replyReceived, &session,
                     [&session, text](const QString& reply) {
                         if (session.failed() || !wire::answers(reply, text))
                             return;
                         CliSession::out(reply);
                         session.finish();
                     });
    // Exactly as typed, like the console's free-text row; the sender refuses what cannot be
    // framed.
    engine.SendCommand(text);
    if (session.failed())
        return session.exec();
    if (wire::isBroadcast(text, session.link().AxisNumber)) {
        // No drive answers; the link's notice says so once the frame has left.
        QTimer::singleShot(engine.timer2IntervalMs() + BroadcastSettleMs, &session,
                           [&session] { session.finish(); });
    } else if (!session.link().run().AwaitingReply) {
        QTimer::singleShot(UnsupervisedWaitMs, &session, [&session] { session.finish(); });
    }
    return session.exec();
}

}  // namespace

CliCommand sendCommand() {
    CliCommand c;
    c.words = QStringList{QStringLiteral("send")};
    c.synopsis = QStringLiteral("send TEXT");
    c.summary = QStringLiteral(
        "Send one command text exactly as given (axis digit, code, data, e.g. 0SO) and print "
        "the reply; an error reply prints its message and exits 4.");
    c.argumentCount = 1;
    c.run = sendText;
    return c;
}

}  // namespace velora::cli
