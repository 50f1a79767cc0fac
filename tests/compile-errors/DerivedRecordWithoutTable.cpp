// error: this record has no wire table
#include "QelFunctionalityCore/Environment/QelEnvStatus.h"

struct Status : Qel::QelRecord<Status, Qel::QelEnvStatus> {
    int more = 0;
};

int read(const Qel::QelMessageIterator& cursor, Status& status) {
    return Status::Reader()(cursor, status);
}
