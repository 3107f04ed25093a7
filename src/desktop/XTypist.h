#pragma once

#include "desktop/KeyTable.h"
#include "desktop/SpareKeys.h"
#include "desktop/TextWriter.h"
#include "desktop/WindowPing.h"
#include "desktop/XDisplay.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QObject>
#include <QTimer>

#include <atomic>
#include <optional>

struct HotKeyInfo;

/// Types texts by key events that are sent to one window, so that the user's own keyboard state is
/// left alone, and key combinations by fake presses that act as real ones.
///
/// It follows the keyboard: after a change of the layouts the next character is already typed by
/// the new ones. Symbols of no layout are lent spare keycodes, several at a time, for a second
/// after the last of them; a place goes to another symbol only when the windows that may still have
/// to read the first have said that they have, or for the deaf ones after a while.
///
/// Lives on a thread of its own, with a connection of its own.
class XTypist : public QObject {
    Q_OBJECT

public:
    explicit XTypist(XDisplayPointer display);
    /// Gives the spare keycodes back, after at most a second.
    ~XTypist() override;

    // From any thread, in the order of the calls.
    /// Types a text, a line feed or a pilcrow as Shift+Return. Logs and tells if it is not typed to
    /// the end: there is no such window, or it has closed.
    void typeLater(unsigned long window, const QString &text, const TypingFailure &failure);
    /// Presses and releases a combination wherever the focus is by then. A key that the keyboard
    /// does not have is logged; then nothing is pressed.
    void pressLater(const HotKeyInfo &key);
    /// @return false if what has been handed over by now takes longer than this
    bool waitForAll(int timeoutMs);
    /// Of the texts that have not yet been typed to the end.
    int waitingCharacters() const { return m_waitingCharacters; }
    /// Ends what is being typed, soon and for good.
    /// From its return on no receiver of a failure is told any more.
    void cancel();

private:
    /// Where one text goes, and how that goes on.
    struct Target {
        unsigned long root;
        unsigned long window;
        unsigned long answering; ///< 0 if it cannot tell what it has read
        int vainRounds = 0;      ///< that found no symbol lent yet, in a row
        int untyped = 0;         ///< characters that have a symbol and got no keycode
    };
    /// Who may still have to read keys through spare keycodes.
    struct Reader {
        unsigned long window;
        unsigned long answering;
        QElapsedTimer sinceLastKey;
    };
    /// The next characters of a text, as many as spare keycodes suffice for at a time.
    struct Piece {
        QVector<XKey> keys;
        QVector<unsigned long> lentSymbols;
        bool isWhole = false; ///< one key alone, which takes a whole spare keycode
    };

    bool type(unsigned long window, const QString &text);
    int typePiece(Target *target, const uint *first, const uint *last);
    Piece nextPiece(const Target &target, const uint *first, const uint *last) const;
    SpareKeys::Lending lend(const Piece &piece);
    void countRound(Target *target, const Piece &piece, SpareKeys::Lending lending) const;
    void findPlaces(Piece *piece) const;
    void typeKeys(Target *target, const QVector<XKey> &keys);
    void sendKey(unsigned long root, unsigned long window, const XKey &key, bool press);
    void tellFailure(const TypingFailure &failure);
    bool press(const HotKeyInfo &key);
    unsigned int keycodeOf(const HotKeyInfo &key);
    std::optional<unsigned int> keyOfLayouts(const HotKeyInfo &key) const;

    void readEvents();
    void followKeyboard();
    void reclaimLeftovers();
    Target targetOf(unsigned long root, unsigned long window) const;
    SpareKeys::Replace replaceable() const;
    void letNoticeLent(const Target &target);
    void noteReader(const Target &target);
    void makeRoom(Target *target);
    bool awaitReaders(int timeoutMs);
    bool hasHadTime(const Reader &reader, int timeoutMs) const;
    void giveBackSpareKeys();
    void pause(qint64 microseconds) const;

    XDisplayPointer m_display;
    WindowPing m_ping;
    SpareKeys m_spareKeys;
    KeyTable m_table;
    bool m_isTableStale = true;
    QVector<Reader> m_readers;
    QTimer m_giveBack;
    int m_triesToGiveBack = 0;
    std::atomic<bool> m_isCancelled{false};
    /// Held while a receiver is told, so that none is told after the end of cancel().
    QMutex m_telling;
    std::atomic<int> m_waitingCharacters{0};
    /// Microseconds, 0 for none.
    int m_symbolDelay;
    int m_enterDelay;
};
