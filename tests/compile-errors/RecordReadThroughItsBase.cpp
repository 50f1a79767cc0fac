// error: this record would be read through its base's table and lose its own fields
#include "QelFunctionalityCore/Environment/QelEnvStatus.h"

struct Status : Qel::QelEnvStatus {
    int more = 0;
};

int read(const Qel::QelMessageIterator& cursor, Status& status) {
    return Status::Reader()(cursor, status);
}
