// Every command of the program. The texts here open the command's help.
#include <array>

#include "cli/command.h"
#include "cli/commands.h"

namespace zelvo::cli {

namespace {

constexpr std::array kCommands = {
    CommandRow{"repair", "Rebuild damaged AVI files; the originals stay as they are",
               "  zelvo-avi repair holiday.avi                     writes holiday-repaired.avi beside it\n"
               "  zelvo-avi repair holiday.avi -o fixed.avi        writes fixed.avi\n"
               "  zelvo-avi repair *.avi --output-dir repaired     repairs several into one folder\n"
               "  zelvo-avi repair --json holiday.avi              for scripts\n",
               makeRepairCommand},
    CommandRow{"salvage", "Bring back all that is left of badly damaged AVI files, in step",
               "  zelvo-avi salvage holiday.avi                    writes holiday-salvaged.avi beside it\n"
               "  zelvo-avi salvage holiday.avi -o saved.avi       writes saved.avi\n"
               "  zelvo-avi salvage --dry-run --verbose hurt.avi   tells the damage, and writes nothing\n"
               "  zelvo-avi salvage --json holiday.avi             for scripts\n"
               "  zelvo-avi salvage -r films --output-dir saved --journal films.journal --resume\n"
               "                                                   a whole folder, as often as it takes\n",
               makeSalvageCommand},
    CommandRow{"triage", "Tell by a quick look what is left of AVI files, and what a deep repair would bring",
               "  zelvo-avi triage holiday.avi                     is anything left at all?\n"
               "  zelvo-avi triage *.avi                           which of these are worth the work?\n"
               "  zelvo-avi triage --json holiday.avi              for scripts\n",
               makeTriageCommand},
    CommandRow{"check", "Tell what a repair would keep, without writing anything",
               "  zelvo-avi check holiday.avi                      can it be repaired, and what is in it?\n"
               "  zelvo-avi check --quiet *.avi && echo all fine   the exit code alone\n",
               makeCheckCommand},
    CommandRow{"verify", "Play films through by decoding them, and tell what is wrong",
               "  zelvo-avi verify holiday.avi                     does it play throughout?\n"
               "  zelvo-avi verify --verbose holiday.avi           tells each fault with its time and byte\n"
               "  zelvo-avi verify --quiet *.avi && echo all play  the exit code alone\n",
               makeVerifyCommand},
    CommandRow{
        "inspect", "Print the structure of an AVI file",
        "  zelvo-avi inspect holiday.avi                    lists, headers, indexes, and what is wrong with them\n"
        "  zelvo-avi inspect --chunks holiday.avi           every chunk of the streams' data too\n"
        "  zelvo-avi inspect --json holiday.avi             for scripts\n",
        makeInspectCommand},
    CommandRow{"summary", "Sum up what the journals of many films say",
               "  zelvo-avi summary films.journal                  totals, and the worst films\n"
               "  zelvo-avi summary --html page.html *.journal     a page with a picture of each film's damage\n"
               "  zelvo-avi summary --csv films.csv *.journal      a table for a spreadsheet\n",
               makeSummaryCommand},
    CommandRow{"drives", "List the writable disks and what is mounted from them",
               "  zelvo-avi drives                                 a table: device, model, size, free space\n"
               "  zelvo-avi drives --tree                          disks over their partitions\n"
               "  zelvo-avi drives --json                          for scripts\n",
               makeDrivesCommand},
};

}  // namespace

std::span<const CommandRow> commandTable() { return kCommands; }

}  // namespace zelvo::cli
