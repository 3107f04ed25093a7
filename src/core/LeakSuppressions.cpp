/// What the leak sanitizer is not to report: pictures that Qt Quick draws without GL stay in its
/// cache of textures to the end of the process.
extern "C" const char *__lsan_default_suppressions(); // NOLINT(bugprone-reserved-identifier)

extern "C" const char *__lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:libQt5Quick.so\n"
           "leak:QImageData::create\n"
           "leak:QPlatformIntegration::createPlatformPixmap\n"
           "leak:QtSharedPointer::ExternalRefCountData::getAndRef\n";
}
