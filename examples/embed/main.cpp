// Has the library fill the map of factories, and calls one as a JS core does when a page first names an object.
#include <vexlitejsapi/entry.h>
#include <vexlitejsapi/version.h>

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    if (VexliteJsApiVersion() >> 16 != VEXLITE_JSAPI_VERSION_MAJOR) {
        std::fprintf(stderr, "The library is of another major version than its headers.\n");
        return 1;
    }
    const QCoreApplication application(argc, argv);
    ExtensionFactoryMap factories;
    GetNovaExtensionJsApiObj(&factories);

    // The two values say which page, and where in it; they are handed back to the JS core. A suite whose core has not
    // started gets 0x80000008.
    const KResult bound = factories.value(QStringLiteral("Log"))(1, 2);
    std::printf("%d objects, Log: %x\n", static_cast<int>(factories.size()), static_cast<unsigned>(bound));
}
