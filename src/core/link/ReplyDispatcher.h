#pragma once

#include <QHash>
#include <QString>

#include <functional>

namespace velora {

class LinkEngine;

// What a reply handler made of its reply. Malformed (a field that is not a number, an index
// outside its table) makes the dispatcher ask the user whether to retry the command.
enum class ReplyStatus { Handled, Malformed };

// Routes each complete reply by its two-letter code to the handler its family registered, turns
// error replies into messages and treats every other reply as an acknowledgement.
class ReplyDispatcher {
public:
    // Receives the whole reply text: axis character, code, data.
    using Handler = std::function<ReplyStatus(const QString& text)>;

    explicit ReplyDispatcher(LinkEngine& engine) : engine_(engine) {}

    // One handler per code; a later registration replaces an earlier one.
    void registerHandler(const QString& code, Handler handler);
    void unregisterHandler(const QString& code);

    // Handles a reply that answers the last command sent; any other is dropped unseen.
    void DispatchReply(const QString& text);
    // From the axis that was asked, with the code asked for or an error reply (or a capture's
    // trigger and record while one is armed).
    [[nodiscard]] bool answersLastCommand(const QString& text) const;
    // How many replies were taken so far: whoever waits sees the link make progress.
    [[nodiscard]] quint64 taken() const { return taken_; }
    void ErrorReply(const QString& text);
    // The reason line for a command the drive could not carry out, from its last status word.
    [[nodiscard]] QString ExecutionFailureDetail() const;
    // The failure for a reply that cannot be processed: Retry re-sends the last command, Cancel
    // switches the real-time monitor off.
    void malformedReply(const QString& text);

private:
    [[nodiscard]] ReplyStatus route(const QString& code, const QString& text);

    LinkEngine& engine_;
    QHash<QString, Handler> handlers_;
    // The error reply to the monitor poll the user has just dismissed, until any other reply
    // comes. The same refusal once more would only bring the same box back forever.
    QString refusedPoll_;
    quint64 taken_ = 0;
    // The sender's count of the supervised command whose answer was taken: any further reply
    // of its code answers one of its re-sends.
    quint64 answered_ = ~quint64{0};
};

}  // namespace velora
