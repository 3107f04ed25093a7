#include "desktop/XTypist.h"

#include "core/settings/TextWriterSettings.h"
#include "desktop/HotKeyInfo.h"
#include "desktop/KeyPress.h"
#include "desktop/ServerGrab.h"
#include "desktop/WindowParent.h"
#include "desktop/XErrorScope.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QMutexLocker>
#include <QSemaphore>
#include <QSocketNotifier>
#include <QThread>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <algorithm>
#include <limits>
#include <memory>

namespace {

/// How long spare keycodes stay lent after the last key, milliseconds.
constexpr int LentMs = 1000;
/// How long a window may take to read its keys before a place is taken from a symbol, milliseconds.
constexpr int ReadPatienceMs = 10000;
/// The same where nobody waits for the place: then it is asked again later, so many times.
constexpr int GiveBackPatienceMs = 500;
constexpr int MostTriesToGiveBack = 30;
/// After so many pauses a window that cannot tell is taken to have read its keys.
constexpr int PausesToRead = 3;
/// The server is grabbed for no more keys than these.
constexpr int LongestPiece = 64;
/// When others have changed the keyboard so many times in a row before what was lent could be used,
/// the rest of the text goes without.
constexpr int MostVainRounds = 20;

struct ClientMapCloser {
    // Freeing the client map alone would leave the record that holds it.
    void operator()(XkbDescRec *map) const { XkbFreeKeyboard(map, XkbAllComponentsMask, True); }
};
using ClientMap = std::unique_ptr<XkbDescRec, ClientMapCloser>;

int microseconds(int milliseconds) {
    constexpr int Factor = 1000;
    return qBound(0, milliseconds, std::numeric_limits<int>::max() / Factor) * Factor;
}

/// A key that is to be pressed with modifiers must mean the same with and without them.
bool takesWholeKeycode(const XKey &key) {
    return !key.onKeyboard && key.state != 0;
}

} // namespace

XTypist::XTypist(XDisplayPointer display)
    : m_display(std::move(display)), m_ping(m_display.get()), m_spareKeys(m_display.get()) {
    const TextWriterSettings settings;
    m_symbolDelay = microseconds(settings.SymbolDelay);
    m_enterDelay = microseconds(settings.EnterDelay);
    // Xlib fetches the map at the first look, and only from then on hears of changes.
    XkbKeycodeToKeysym(m_display.get(), 0, 0, 0);
    reclaimLeftovers();

    auto *notifier =
        new QSocketNotifier(ConnectionNumber(m_display.get()), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &XTypist::readEvents);
    m_giveBack.setParent(this);
    m_giveBack.setSingleShot(true);
    connect(&m_giveBack, &QTimer::timeout, this, &XTypist::giveBackSpareKeys);
}

XTypist::~XTypist() {
    const XErrorScope errors(m_display.get());
    m_isCancelled = false;
    awaitReaders(LentMs);
    const ServerGrab grab(m_display.get());
    m_spareKeys.giveBack();
}

void XTypist::readEvents() {
    if (drainEvents(m_display.get()))
        m_isTableStale = true;
}

void XTypist::followKeyboard() {
    readEvents();
    if (!m_isTableStale)
        return;
    const ClientMap map(XkbGetMap(
        m_display.get(), XkbKeyTypesMask | XkbKeySymsMask | XkbModifierMapMask, XkbUseCoreKbd));
    if (!map)
        return;
    m_spareKeys.follow(*map);
    m_table = KeyTable(m_display.get(), *map, m_spareKeys.lentKeycodes());
    m_spareKeys.setUnused(m_table.unused());
    m_isTableStale = false;
}

void XTypist::reclaimLeftovers() {
    const ServerGrab grab(m_display.get());
    followKeyboard();
    if (m_spareKeys.lentKeycodes().isEmpty())
        return;
    qInfo("XTextWriter: Spare keycodes of a former process are given back");
    m_spareKeys.giveBack();
}

void XTypist::typeLater(unsigned long window, const QString &text, const TypingFailure &failure) {
    m_waitingCharacters += text.size();
    QMetaObject::invokeMethod(
        this,
        [this, window, text, failure] {
            if (m_isCancelled)
                return;
            if (!type(window, text)) {
                qWarning("XTextWriter: Not typed to the end, characters: %d", text.size());
                tellFailure(failure);
            }
            m_waitingCharacters -= text.size();
        },
        Qt::QueuedConnection);
}

void XTypist::tellFailure(const TypingFailure &failure) {
    const QMutexLocker locker(&m_telling);
    if (failure.receiver && !m_isCancelled)
        QMetaObject::invokeMethod(failure.receiver, failure.tell, Qt::QueuedConnection);
}

void XTypist::cancel() {
    const QMutexLocker locker(&m_telling);
    m_isCancelled = true;
}

void XTypist::pressLater(const HotKeyInfo &key) {
    QMetaObject::invokeMethod(
        this,
        [this, key] {
            if (!m_isCancelled)
                press(key);
        },
        Qt::QueuedConnection);
}

bool XTypist::waitForAll(int timeoutMs) {
    // Whichever of the two is through last frees it.
    const auto isDone = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(
        this, [isDone] { isDone->release(); }, Qt::QueuedConnection);
    return isDone->tryAcquire(1, timeoutMs);
}

bool XTypist::type(unsigned long window, const QString &text) {
    const XErrorScope errors(m_display.get());
    const WindowParent tree = queryParent(m_display.get(), window);
    if (!tree.isKnown)
        return false;
    Target target = targetOf(tree.root, window);
    const QVector<uint> codePoints = text.toUcs4();
    const uint *next = codePoints.constBegin();
    // Each piece also reads the errors that have arrived, so a closed window ends the loop.
    while (next != codePoints.constEnd() && !errors.errorCode() && !m_isCancelled)
        next += typePiece(&target, next, codePoints.constEnd());
    XSync(m_display.get(), False);
    if (errors.errorCode() != 0)
        qInfo("XTextWriter: X error %d while typing", errors.errorCode());
    if (target.untyped != 0)
        qWarning("XTextWriter: No spare keycode, not typed, characters: %d", target.untyped);
    return errors.errorCode() == 0 && next == codePoints.constEnd();
}

int XTypist::typePiece(Target *target, const uint *first, const uint *last) {
    Piece piece;
    SpareKeys::Lending lending;
    {
        const ServerGrab grab(m_display.get());
        followKeyboard();
        piece = nextPiece(*target, first, last);
        lending = lend(piece);
        if (lending == SpareKeys::Lending::AllThere) {
            findPlaces(&piece);
            // Without pauses no change of the layouts can come between the table and the keys.
            if (m_symbolDelay == 0)
                typeKeys(target, piece.keys);
        }
    }
    countRound(target, piece, lending);
    if (lending == SpareKeys::Lending::NoRoom)
        makeRoom(target);
    else if (lending == SpareKeys::Lending::Lent)
        letNoticeLent(*target);
    if (lending != SpareKeys::Lending::AllThere)
        return 0;
    if (m_symbolDelay != 0)
        typeKeys(target, piece.keys);
    if (!piece.lentSymbols.isEmpty())
        noteReader(*target);
    return piece.keys.size();
}

XTypist::Piece XTypist::nextPiece(const Target &target, const uint *first, const uint *last) const {
    const int longest = m_symbolDelay == 0 ? LongestPiece : 1;
    const bool lends = m_spareKeys.capacity() > 0 && target.vainRounds < MostVainRounds;
    Piece piece;
    for (; first != last && piece.keys.size() < longest; ++first) {
        const XKey key = m_table.wchar2key(static_cast<wchar_t>(*first));
        const bool isLent = !key.onKeyboard && key.keysym != NoSymbol && lends;
        if (isLent && takesWholeKeycode(key)) {
            if (piece.keys.isEmpty())
                piece = {{key}, {key.keysym}, true};
            break;
        }
        if (isLent && !piece.lentSymbols.contains(key.keysym)) {
            if (piece.lentSymbols.size() == m_spareKeys.capacity())
                break;
            piece.lentSymbols.append(key.keysym);
        }
        piece.keys.append(key);
    }
    return piece;
}

SpareKeys::Lending XTypist::lend(const Piece &piece) {
    if (!piece.isWhole)
        return m_spareKeys.lend(piece.lentSymbols, replaceable());
    const unsigned long keysym = piece.lentSymbols.constFirst();
    if (m_spareKeys.findWhole(keysym) != 0)
        return SpareKeys::Lending::AllThere;
    return m_spareKeys.lendWhole(keysym, replaceable()) != 0 ? SpareKeys::Lending::Lent
                                                             : SpareKeys::Lending::NoRoom;
}

void XTypist::countRound(Target *target, const Piece &piece, SpareKeys::Lending lending) const {
    if (lending == SpareKeys::Lending::AllThere) {
        if (!piece.lentSymbols.isEmpty())
            target->vainRounds = 0;
        return;
    }
    if (++target->vainRounds == MostVainRounds)
        qWarning("XTextWriter: The keyboard changes all the time, no more keycodes are lent");
}

void XTypist::findPlaces(Piece *piece) const {
    for (XKey &key : piece->keys) {
        if (!piece->lentSymbols.contains(key.keysym))
            continue;
        if (piece->isWhole) {
            key.keycode = m_spareKeys.findWhole(key.keysym);
        } else if (const auto place = m_spareKeys.find(key.keysym)) {
            key.keycode = place->keycode;
            key.state = place->state;
        }
    }
}

void XTypist::typeKeys(Target *target, const QVector<XKey> &keys) {
    for (const XKey &key : keys) {
        if (key.keycode == 0 && key.keysym != NoSymbol) {
            // What was said must not get into the log letter by letter.
            ++target->untyped;
            continue;
        }
        if (key.keycode == 0) {
            qInfo().noquote() << QStringLiteral("XTextWriter: Unknown char %1")
                                     .arg(static_cast<uint>(key.ch), 0, 16);
            continue;
        }
        for (const bool press : {true, false}) {
            sendKey(target->root, target->window, key, press);
            pause(m_symbolDelay);
        }
    }
}

void XTypist::sendKey(unsigned long root, unsigned long window, const XKey &key, bool press) {
    XEvent event = {};
    XKeyEvent &keyEvent = event.xkey;
    keyEvent.type = press ? KeyPress : KeyRelease;
    keyEvent.display = m_display.get();
    keyEvent.window = window;
    keyEvent.root = root;
    keyEvent.time = CurrentTime;
    keyEvent.x = keyEvent.y = keyEvent.x_root = keyEvent.y_root = 1;
    keyEvent.state = key.state;
    keyEvent.keycode = key.keycode;
    keyEvent.same_screen = True;
    XSendEvent(m_display.get(), window, True, NoEventMask, &event);
    XFlush(m_display.get());
}

bool XTypist::press(const HotKeyInfo &key) {
    int unused = 0;
    Display *display = m_display.get();
    // It also readies the extension, which Xlib must not do behind the grab: that takes a lock
    // which another thread may hold while it waits for the server.
    if (!XTestQueryExtension(display, &unused, &unused, &unused, &unused))
        return false;
    const XErrorScope errors(display);
    XSync(display, False);
    readEvents();
    const auto modifiers = modifierKeys(display, key.modifiers);
    const unsigned int keycode = keycodeOf(key);
    const bool hasKey = keycode != 0 || key.keysym == NoSymbol;
    if (!modifiers || !hasKey || (keycode == 0 && modifiers->isEmpty())) {
        qWarning("XTextWriter: No key for a combination, nothing is pressed");
        return false;
    }
    const QVector<unsigned int> pressed = pressKey(display, *modifiers, keycode);
    for (const unsigned int code : pressed)
        qDebug().noquote() << QStringLiteral("push %1").arg(code);
    return true;
}

unsigned int XTypist::keycodeOf(const HotKeyInfo &key) {
    Window window = None;
    int revert = 0;
    XGetInputFocus(m_display.get(), &window, &revert);
    Target target = targetOf(DefaultRootWindow(m_display.get()), window);
    for (;;) {
        unsigned int keycode = 0;
        const SpareKeys::Replace replace = replaceable();
        {
            const ServerGrab grab(m_display.get());
            followKeyboard();
            if (const auto known = keyOfLayouts(key))
                return *known;
            keycode = m_spareKeys.lendWhole(key.keysym, replace);
        }
        if (keycode != 0) {
            letNoticeLent(target);
            noteReader(target);
        }
        if (keycode != 0 || replace == SpareKeys::Replace::Yes || m_isCancelled)
            return keycode;
        makeRoom(&target);
    }
}

std::optional<unsigned int> XTypist::keyOfLayouts(const HotKeyInfo &key) const {
    // Whoever looked the keycode up may have found the symbol where it was lent.
    if (key.code != 0 && !m_spareKeys.contains(static_cast<unsigned char>(key.code)))
        return key.code;
    if (key.keysym == NoSymbol || key.keysym == XK_VoidSymbol)
        return key.code;
    const XKey known = m_table.symbol2key(key.keysym);
    return known.keycode != 0 ? std::optional<unsigned int>(known.keycode) : std::nullopt;
}

XTypist::Target XTypist::targetOf(unsigned long root, unsigned long window) const {
    return {root, window, m_ping.answering(window), 0, 0};
}

SpareKeys::Replace XTypist::replaceable() const {
    return m_readers.isEmpty() ? SpareKeys::Replace::Yes : SpareKeys::Replace::No;
}

void XTypist::letNoticeLent(const Target &target) {
    m_giveBack.start(LentMs);
    if (target.answering == None)
        pause(m_enterDelay);
}

void XTypist::noteReader(const Target &target) {
    m_giveBack.start(LentMs);
    m_triesToGiveBack = 0;
    const auto isTarget = [&target](const Reader &reader) {
        return reader.window == target.window;
    };
    m_readers.erase(std::remove_if(m_readers.begin(), m_readers.end(), isTarget), m_readers.end());
    Reader reader{target.window, target.answering, {}};
    reader.sinceLastKey.start();
    m_readers.append(reader);
}

void XTypist::makeRoom(Target *target) {
    if (awaitReaders(ReadPatienceMs) || m_isCancelled)
        return;
    qWarning("XTextWriter: A window has not read its keys for %d ms", ReadPatienceMs);
    m_readers.clear();
    target->answering = None;
}

bool XTypist::awaitReaders(int timeoutMs) {
    const QDeadlineTimer deadline(timeoutMs);
    while (!m_readers.isEmpty()) {
        const Reader &reader = m_readers.constFirst();
        const int left = static_cast<int>(deadline.remainingTime());
        const bool hasRead = reader.answering != None
                                 ? m_ping.hasRead(reader.answering, left, m_isCancelled)
                                 : hasHadTime(reader, left);
        if (!hasRead)
            return false;
        m_readers.removeFirst();
    }
    return true;
}

bool XTypist::hasHadTime(const Reader &reader, int timeoutMs) const {
    constexpr qint64 Factor = 1000;
    const qint64 needed = qint64(PausesToRead) * m_enterDelay / Factor;
    const qint64 left = needed - reader.sinceLastKey.elapsed();
    pause(qMin<qint64>(left, timeoutMs) * Factor);
    return left <= timeoutMs && !m_isCancelled;
}

void XTypist::pause(qint64 microseconds) const {
    constexpr qint64 Slice = 50000;
    for (qint64 left = microseconds; left > 0 && !m_isCancelled; left -= Slice)
        QThread::usleep(static_cast<unsigned long>(qMin(left, Slice)));
}

void XTypist::giveBackSpareKeys() {
    const XErrorScope errors(m_display.get());
    if (!awaitReaders(GiveBackPatienceMs) && ++m_triesToGiveBack < MostTriesToGiveBack) {
        m_giveBack.start(LentMs);
        return;
    }
    m_readers.clear();
    const ServerGrab grab(m_display.get());
    followKeyboard();
    m_spareKeys.giveBack();
}
