#include "VeltorKeypadViewController.h"

#include "ApplicationStateSystem.h"
#include "LocationTrackingSystem.h"
#include "PreferencesSystem.h"
#include "TargetSystem.h"

#include <array>

namespace {

// Digits as on a calculator: 7 8 9 / 4 5 6 / 1 2 3 / 0, the fourth column left empty.
constexpr std::array<std::pair<int, char>, 10> digitLayout{{{0, '7'},
                                                            {1, '8'},
                                                            {2, '9'},
                                                            {4, '4'},
                                                            {5, '5'},
                                                            {6, '6'},
                                                            {8, '1'},
                                                            {9, '2'},
                                                            {10, '3'},
                                                            {12, '0'}}};

QStringList keySetForLength(qsizetype length)
{
    QStringList titles(VeltorKeypadViewController::characterKeyCount);
    const auto letters = [&titles](char first, int count) {
        for (int i = 0; i < count; ++i)
            titles[i] = QString(QLatin1Char(char(first + i)));
    };
    if (length < 2) {
        letters('A', 18);
    } else if (length < 4 || length >= 6) {
        for (const auto &[index, digit] : digitLayout)
            titles[index] = QString(QLatin1Char(digit));
    } else {
        letters('a', 24);
    }
    return titles;
}

} // namespace

VeltorKeypadViewController::VeltorKeypadViewController(QObject *parent)
    : VeltorKeypadViewController(
          ApplicationStateSystem::sharedSystem(), PreferencesSystem::sharedSystem(),
          LocationTrackingSystem::sharedSystem(), TargetSystem::sharedSystem(), parent)
{
}

VeltorKeypadViewController::VeltorKeypadViewController(ApplicationStateSystem &state,
                                                       PreferencesSystem &preferences,
                                                       LocationTrackingSystem &tracking,
                                                       TargetSystem &targets, QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences), m_tracking(tracking),
      m_targets(targets)
{
    for (int i = 0; i < characterKeyCount; ++i) {
        m_keys.append(new KeypadKey(
            i / columns, i % columns,
            [this](const QString &title) { characterButtonTapped(title); }, this));
    }
    refreshOutputLabel();
    refreshKeys();
}

QString VeltorKeypadViewController::title() const
{
    if (m_targetMode) {
        //: Heading of the locator keypad when it sets the target
        //% "Target Locator"
        return qtTrId("keypad.veltor.target-title");
    }
    //: Heading of the locator keypad
    //% "Locator"
    return qtTrId("keypad.veltor.title");
}

void VeltorKeypadViewController::setTargetMode(bool targetMode)
{
    if (m_targetMode == targetMode)
        return;
    m_targetMode = targetMode;
    emit targetModeChanged();
    refreshOutputLabel();
}

QStringList VeltorKeypadViewController::keyTitles() const
{
    QStringList titles;
    for (const KeypadKey *key : m_keys)
        titles.append(key->title());
    return titles;
}

QList<bool> VeltorKeypadViewController::keysEnabled() const
{
    QList<bool> enabled;
    for (const KeypadKey *key : m_keys)
        enabled.append(key->isEnabled());
    return enabled;
}

void VeltorKeypadViewController::refreshOutputLabel()
{
    if (m_workingString) {
        m_outputText = *m_workingString;
        m_outputAccessibilityLabel = spelledOut(*m_workingString);
    } else if (m_targetMode) {
        // Until the first key, the label shows the target there is, if any.
        m_veltorFormatter.setFormat(m_preferences.veltorFormat());
        const std::optional<Coordinate> target = m_targets.target();
        m_outputText = target ? m_veltorFormatter.stringFromCoordinate(*target) : QString();
        m_outputAccessibilityLabel = target ? spelledOut(m_outputText) : QString();
    } else {
        // Until the first key, the label shows where the point is now.
        m_veltorFormatter.setFormat(m_preferences.veltorFormat());
        m_outputText = m_veltorFormatter.stringFromCoordinate(m_state.coordinate());
        m_outputAccessibilityLabel =
            spelledVeltor(m_veltorFormatter.format(), m_state.coordinate());
    }
    emit outputChanged();
}

void VeltorKeypadViewController::refreshKeys()
{
    const QStringList titles = keySetForLength(m_workingString ? m_workingString->size() : 0);
    for (qsizetype i = 0; i < m_keys.size(); ++i) {
        m_keys[i]->setTitle(titles[i]);
        m_keys[i]->setEnabled(!titles[i].isEmpty());
    }
    emit accessibilityFocusRequested();
}

void VeltorKeypadViewController::characterButtonTapped(const QString &title)
{
    if (title.isEmpty())
        return;
    if (!m_workingString)
        m_workingString = title;
    else if (m_workingString->size() >= VeltorFormatter::maximumEncodedLength)
        return;
    else
        m_workingString->append(title);
    refreshOutputLabel();
    refreshKeys();
}

void VeltorKeypadViewController::deleteButtonTapped()
{
    if (!m_workingString || m_workingString->isEmpty())
        return;
    m_workingString->chop(1);
    refreshOutputLabel();
    refreshKeys();
}

void VeltorKeypadViewController::doneButtonTapped()
{
    if (m_targetMode) {
        if (m_workingString && !m_workingString->isEmpty())
            m_targets.setTarget(m_veltorFormatter.coordinateFromString(*m_workingString));
    } else if (m_workingString) {
        // A typed point always ends live tracking, before it is written.
        if (m_tracking.tracking())
            m_tracking.endTracking();
        m_state.setCoordinate(m_veltorFormatter.coordinateFromString(*m_workingString));
    }
    emit dismissRequested();
}

void VeltorKeypadViewController::cancel()
{
    emit dismissRequested();
}

bool VeltorKeypadViewController::handleKey(int key, const QString &text)
{
    if (runKeypadCommand(*this, key))
        return true;
    if (text.size() != 1)
        return false;
    // Letters match the shown key in either case, as a user types "jn58TD" without thinking.
    for (KeypadKey *key : std::as_const(m_keys)) {
        if (key->isEnabled() && key->title().compare(text, Qt::CaseInsensitive) == 0) {
            key->press();
            return true;
        }
    }
    return false;
}
