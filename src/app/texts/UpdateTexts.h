#pragma once

#include "app/settings/Localisation.h"

/// Texts of looking for a newer version. "%1" is a version, a package or an explanation.
namespace corvel::texts {

inline constexpr Text updateChecking{"Sprawdzanie aktualizacji…", "Checking for Updates…"};
inline constexpr Text updateCheckingBody{"Pytam system o nowszą wersję programu.",
                                         "Asking the system for a newer version of the program."};
inline constexpr Text updateNewer{"Jest nowsza wersja", "A Newer Version Is Available"};
inline constexpr Text updateNewerBody{
    "System oferuje wersję %1; używasz wersji %2. Zainstalujesz ją w programie do zarządzania "
    "oprogramowaniem.",
    "The system offers version %1; you are using version %2. It is installed with the system's "
    "software centre."};
inline constexpr Text updateOpenSoftware{"Pokaż w systemie", "Show in Software"};
inline constexpr Text updateNoSoftware{
    "Na tym komputerze nie ma programu do zarządzania oprogramowaniem. Zaktualizuj pakiet "
    "qno-corvel poleceniem „sudo apt upgrade”.",
    "This computer has no software centre. Update the package qno-corvel with the command “sudo "
    "apt upgrade”."};
inline constexpr Text updateNone{"Program jest aktualny", "The Program Is Up to Date"};
inline constexpr Text updateNoneBody{"Masz wersję %1, a system nie oferuje nowszej.",
                                     "You have version %1, and the system offers no newer one."};
inline constexpr Text updateUnknown{"Nie można sprawdzić aktualizacji",
                                    "Updates Cannot Be Checked"};
inline constexpr Text updateUnmanaged{"Skąd przychodzą aktualizacje", "Where Updates Come From"};
inline constexpr Text updateFlatpak{
    "Używasz wersji %1, zainstalowanej jako Flatpak. Aktualizuje ją program do zarządzania "
    "oprogramowaniem albo polecenie „flatpak update”.",
    "You are using version %1, installed as a Flatpak. The software centre updates it, or the "
    "command “flatpak update”."};
inline constexpr Text updatePackage{
    "Używasz wersji %1 z pakietu %2. Aktualizuje ją menedżer pakietów systemu, na przykład "
    "polecenie "
    "„sudo apt upgrade”.",
    "You are using version %1 from the package %2. The system's package manager updates it, for "
    "example the command “sudo apt upgrade”."};
inline constexpr Text updateBuilt{
    "Używasz wersji %1 zbudowanej ze źródeł. Aby mieć nowszą, pobierz nowsze źródła i zbuduj "
    "program ponownie.",
    "You are using version %1, built from source. For a newer one, get newer sources and build the "
    "program again."};
inline constexpr Text updateFailed{"System nie odpowiedział na pytanie o aktualizacje.",
                                   "The system did not answer the question for updates."};
inline constexpr Text updateFailedBecause{"System nie odpowiedział na pytanie o aktualizacje: %1",
                                          "The system did not answer the question for updates: %1"};

}  // namespace corvel::texts
