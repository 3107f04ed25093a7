#include "desktop/TextWriter.h"

#include "desktop/XTextWriter.h"

std::unique_ptr<TextWriter> TextWriter::Writer;

void TextWriter::Init() {
    // One that is still there gives the keyboard back first.
    Writer.reset();
    Writer = std::make_unique<XTextWriter>();
}

void TextWriter::Cleanup() {
    Writer.reset();
}

bool TextWriter::WriteText(unsigned long window, const QString &text,
                           const TypingFailure &failure) {
    return Writer && Writer->writeText(window, text, failure);
}

bool TextWriter::WriteKey(unsigned long window, const HotKeyInfo &key) {
    return Writer && Writer->writeKey(window, key);
}

bool TextWriter::WaitForTyped(int timeoutMs) {
    return Writer && Writer->waitForTyped(timeoutMs);
}

bool TextWriter::waitForTyped(int) {
    return true;
}

unsigned long TextWriter::GetFocusedWindow() {
    return Writer ? Writer->getFocusedWindow() : 0;
}

bool TextWriter::WindowExists(unsigned long window) {
    return !Writer || Writer->windowExists(window);
}

bool TextWriter::TakesText(unsigned long window) {
    return Writer && Writer->takesText(window);
}

bool TextWriter::GetWindowRect(unsigned long window, QRect *rect) {
    return Writer && Writer->getWindowRect(window, rect);
}
