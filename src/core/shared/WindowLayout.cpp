#include "core/shared/WindowLayout.h"

#include <QSettings>
#include <QStringList>

namespace velora {

namespace {

const QString kGroup = QStringLiteral("WindowLayout");
const QString kMain = QStringLiteral("Main");
const QString kMaximised = QStringLiteral("MainMaximised");
const QString kJoined = QStringLiteral("TablesJoined");
const QString kWindows = QStringLiteral("Windows");
// Far beyond any screen: a stored number beyond it is damage, not a place.
constexpr int kLimit = 100000;

const char* const kStates[] = {"Normal", "Minimised", "Hidden"};

QString rectText(const QRect& r) {
    return QStringLiteral("%1,%2,%3,%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

std::optional<QRect> rectOf(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 4)
        return std::nullopt;
    int v[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        v[i] = parts[i].trimmed().toInt(&ok);
        if (!ok || v[i] < -kLimit || v[i] > kLimit)
            return std::nullopt;
    }
    if (v[2] <= 0 || v[3] <= 0)
        return std::nullopt;
    return QRect(v[0], v[1], v[2], v[3]);
}

std::optional<WindowLayout::FrameState> stateOf(const QString& text) {
    for (int i = 0; i < 3; ++i) {
        if (text == QLatin1String(kStates[i]))
            return static_cast<WindowLayout::FrameState>(i);
    }
    return std::nullopt;
}

}  // namespace

const WindowLayout::Frame* WindowLayout::frame(const QString& name) const {
    for (const Frame& f : frames) {
        if (f.name == name)
            return &f;
    }
    return nullptr;
}

std::optional<WindowLayout> WindowLayout::read(QSettings& settings) {
    settings.beginGroup(kGroup);
    // An ini file edited by hand leaves "1,2,3,4" unquoted, which reads as a list.
    const auto value = [&settings](const QString& key) {
        const QVariant v = settings.value(key);
        return (v.typeId() == QMetaType::QStringList ? v.toStringList().join(QLatin1Char(','))
                                                     : v.toString())
            .trimmed();
    };
    std::optional<WindowLayout> result;
    const std::optional<QRect> main = rectOf(value(kMain));
    const QStringList names = value(kWindows).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (main && !names.isEmpty() && names.size() <= 32) {
        WindowLayout layout;
        layout.mainGeometry = *main;
        layout.mainMaximised = value(kMaximised) == QLatin1String("True");
        layout.tablesJoined = value(kJoined) == QLatin1String("True");
        bool whole = true;
        for (const QString& name : names) {
            // "x,y,w,h,State"
            const QString text = value(name);
            const int cut = text.lastIndexOf(QLatin1Char(','));
            const std::optional<QRect> rect = rectOf(text.left(cut));
            const std::optional<FrameState> state = stateOf(text.mid(cut + 1));
            if (cut < 0 || !rect || !state) {
                whole = false;
                break;
            }
            layout.frames.append({name, *rect, *state});
        }
        if (whole)
            result = layout;
    }
    settings.endGroup();
    return result;
}

void WindowLayout::write(QSettings& settings) const {
    settings.remove(kGroup);
    settings.beginGroup(kGroup);
    settings.setValue(kMain, rectText(mainGeometry));
    settings.setValue(kMaximised, mainMaximised ? QStringLiteral("True") : QStringLiteral("False"));
    settings.setValue(kJoined, tablesJoined ? QStringLiteral("True") : QStringLiteral("False"));
    QStringList names;
    for (const Frame& f : frames) {
        names << f.name;
        settings.setValue(f.name, rectText(f.geometry) + QLatin1Char(',') +
                                      QLatin1String(kStates[static_cast<int>(f.state)]));
    }
    settings.setValue(kWindows, names.join(QLatin1Char(' ')));
    settings.endGroup();
}

}  // namespace velora
