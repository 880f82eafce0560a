#pragma once

#include <QString>

namespace velora {

class LinkEngine;

// The messages of the link's failures. Each keeps the catalogue's own words and adds which
// request failed, on which axis, at which rate, on which device, and what to do next.
namespace linkfailure {

// The request in question: the last command sent, without its axis character.
[[nodiscard]] QString request(const LinkEngine& engine);
// "No answer to '<request>' from axis <n> at <rate> baud on <device> after <k> re-sends."
[[nodiscard]] QString noAnswerDetail(const LinkEngine& engine);
// The reply-time-out question: "Communication Failure", the detail and the advice.
[[nodiscard]] QString noAnswer(const LinkEngine& engine);
// The malformed-reply question, naming the reply that could not be read.
[[nodiscard]] QString unreadableReply(const LinkEngine& engine, const QString& reply);

}  // namespace linkfailure

}  // namespace velora
