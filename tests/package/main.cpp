#include <cstdio>

#include <QelCommon/ErrorMessage.h>
#include <QelFunctionalityCore/QelFunctionalityCore.h>

// Succeeds if the installed headers and libraries go together.
int main() {
    Qel::setErrorMessage("%d libraries", 4);
    std::puts(Qel::getErrorMessage().c_str());
    return Qel::getErrorMessage() == "4 libraries" ? 0 : 1;
}
