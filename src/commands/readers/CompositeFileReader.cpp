#include "commands/readers/CompositeFileReader.h"

#include "commands/readers/CommonFileReader.h"
#include "commands/readers/OpenFileReader.h"

#include <QFileInfo>

QString CompositeFileReader::ReadFile(const QString &path, QString *error) {
    if (QFileInfo(path).suffix() == QLatin1String("odt"))
        return OpenFileReader().ReadFile(path, error);
    return CommonFileReader().ReadFile(path, error);
}
