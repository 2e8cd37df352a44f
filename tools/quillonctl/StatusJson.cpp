// The status for programs. In a file of its own, as the JSON library is large to compile.
#include <nlohmann/json.hpp>

#include "tools/console/Arguments.h"
#include "tools/console/Console.h"
#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/Status.h"

namespace {

using Json = nlohmann::ordered_json;

Json TextOrNull(const std::wstring& text) {
    return text.empty() ? Json() : Json(ToUTF8(text));
}

// What cannot be found out is an object with the reason.
template <class T, class Write>
Json AnswerOf(const Answer<T>& answer, Write write) {
    return answer.IsKnown() ? write(answer.value) : Json{{"problem", ToUTF8(answer.problem)}};
}

Json LibraryOf(const StatusFacts::Library& library) {
    return {{"path", ToUTF8(library.path)},
            {"exists", library.exists},
            {"version", TextOrNull(library.version.value_or(L""))}};
}

Json ListenersOf(const std::vector<Listener>& listeners) {
    Json list = Json::array();
    for (const Listener& listener : listeners) {
        list.push_back({{"session", listener.session < 0 ? Json() : Json(listener.session)},
                        {"process", listener.processID},
                        {"listening", listener.isListening},
                        {"told", listener.IsTold()},
                        {"otherProgram", TextOrNull(listener.otherProgram.value_or(L""))}});
    }
    return list;
}

}  // namespace

std::wstring StatusFacts::FormatAsJson() const {
    const auto printersOf = [this](const std::vector<PrinterInfo>& found) {
        Json list = Json::array();
        for (const PrinterInfo& printer : found) {
            list.push_back({{"name", ToUTF8(printer.name)},
                            {"driver", ToUTF8(printer.driver)},
                            {"pageSeen", TextOrNull(GetPageOf(printer.name))}});
        }
        return list;
    };
    const Json json{{"complete", IsComplete()},
                    {"ready", IsReady()},
                    {"lacksForwardingMonitor", lacksForwarding},
                    {"monitor", AnswerOf(registeredLibrary,
                                         [](const auto& name) { return TextOrNull(name.value_or(L"")); })},
                    {"library", AnswerOf(library, LibraryOf)},
                    {"port", AnswerOf(portFound, [](bool found) { return Json(found); })},
                    {"printers", AnswerOf(printers, printersOf)},
                    {"listeners", AnswerOf(listeners, ListenersOf)},
                    {"jobFolder", AnswerOf(jobFolder, [](const JobFolder& folder) {
                         return Json{{"path", ToUTF8(folder.path)}, {"freeBytes", folder.freeBytes}};
                     })}};
    return FromUTF8(json.dump(2) + '\n');
}
