#include "core/link/CommandCatalogue.h"

#include <QLatin1String>

#include <algorithm>
#include <array>

namespace velora::commands {

namespace {

template <std::size_t N>
bool contains(const std::array<QLatin1String, N>& codes, const QString& code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

constexpr std::array kUnsupervised{QLatin1String("ma"), QLatin1String("RT")};
constexpr std::array kUnlocked{QLatin1String("ma"), QLatin1String("RT"), QLatin1String("wm")};
constexpr std::array kReadAll{QLatin1String("pa"), QLatin1String("ta"), QLatin1String("ca")};
constexpr std::array kWriteReplies{QLatin1String("PW"), QLatin1String("PT"), QLatin1String("TW"),
                                   QLatin1String("TT"), QLatin1String("VW"), QLatin1String("CW"),
                                   QLatin1String("QW"), QLatin1String("VT"), QLatin1String("CT"),
                                   QLatin1String("QT")};
constexpr std::array kRouted{
    QLatin1String("ma"), QLatin1String("wm"), QLatin1String("wr"), QLatin1String("wd"),
    QLatin1String("wq"), QLatin1String("pa"), QLatin1String("ta"), QLatin1String("ca"),
    QLatin1String("AD"), QLatin1String("AR"), QLatin1String("HC"), QLatin1String("PR"),
    QLatin1String("PW"), QLatin1String("PT"), QLatin1String("TR"), QLatin1String("TW"),
    QLatin1String("TT"), QLatin1String("VR"), QLatin1String("VW"), QLatin1String("VT"),
    QLatin1String("CR"), QLatin1String("CW"), QLatin1String("CT"), QLatin1String("QR"),
    QLatin1String("QW"), QLatin1String("QT"), QLatin1String("ER")};

}  // namespace

bool isSupervised(const QString& code) {
    return !contains(kUnsupervised, code);
}
bool locksUi(const QString& code) {
    return !contains(kUnlocked, code);
}
bool isReadAll(const QString& code) {
    return contains(kReadAll, code);
}
bool isWriteReply(const QString& code) {
    return contains(kWriteReplies, code);
}
bool isRoutedReply(const QString& code) {
    return contains(kRouted, code);
}

}  // namespace velora::commands
