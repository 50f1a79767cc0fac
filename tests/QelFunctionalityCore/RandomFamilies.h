#pragma once

#include "QelFunctionalityCore/Backup/RandomBackup.h"
#include "QelFunctionalityCore/Configuration/RandomConfiguration.h"
#include "QelFunctionalityCore/Environment/RandomEnvironment.h"
#include "QelFunctionalityCore/Events/RandomEvents.h"
#include "QelFunctionalityCore/Files/RandomFiles.h"
#include "QelFunctionalityCore/Host/RandomHost.h"
#include "QelFunctionalityCore/Monitoring/RandomMonitoring.h"
#include "QelFunctionalityCore/Network/RandomNetwork.h"
#include "QelFunctionalityCore/Profile/RandomProfile.h"
#include "QelFunctionalityCore/Scheduling/RandomScheduling.h"
#include "QelFunctionalityCore/Security/RandomSecurity.h"
#include "QelFunctionalityCore/Values/RandomValues.h"
#include "QelFunctionalityCore/Vocabulary/RandomVocabulary.h"

namespace Qel::TestSupport {

inline RandomFamily makeFamilies() {
    RandomFamily all;
    for (RandomFamily (*const family)() :
         {randomBackup, randomConfiguration, randomEnvironment, randomEvents, randomFiles, randomHost, randomMonitoring,
          randomNetwork, randomProfile, randomScheduling, randomSecurity, randomValues, randomVocabulary})
        all.add(family());
    return all;
}

/// The supplements of all families.
inline const RandomFamily& families() {
    static const RandomFamily all = makeFamilies();
    return all;
}

} // namespace Qel::TestSupport
