// error: this record would be written through its base's table and lose its own fields
#include "QelFunctionalityCore/Environment/QelEnvStatus.h"

struct Status : Qel::QelEnvStatus {
    int more = 0;
};

int write(Qel::QelMessageIterator& cursor, const Status& status) {
    return Status::Writer()(cursor, status);
}
