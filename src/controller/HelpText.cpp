#include "controller/HelpText.h"

namespace tarvin::controller {

const std::string_view helpText =
    R"(usage: tarvin-controller (--port DEVICE [--baud N] | --pty LINK) [options] COMMAND...

A simulated machine controller. It opens a serial line, or makes a pseudo-terminal
whose other end is found through the symbolic link LINK (not on Windows), and
carries out its commands one after the other.

Commands
  test                link test
  put NUMBER FILE     sends FILE to the program as the file of that number
  get NUMBER [FILE]   asks for a file, and writes what comes to FILE with CR LF line
                      ends once all of it has come (a FILE with the name of a command
                      is written as ./get)
  check NUMBER FILE   asks for a file and requires its lines to be those of FILE
  refuse-put NUMBER   right only if the program refuses to take the file (AAAK03)
  refuse-get NUMBER   right only if the program refuses to give the file (AAAK01)
  send TEXT           sends one message; nothing is required in return
  expect TEXT         requires TEXT to be the next message that comes
  stay                keeps the line and answers nothing until the program has closed it
                      (on a serial device, where that cannot be seen, until it is ended)
File numbers are sent as given. Lines of FILE end with LF or CR LF; its empty lines
are not sent and not compared, since the program keeps and sends none.

Line
  --baud N            bits per second (9600); always 8 data bits, no parity, 1 stop bit
  --connect SECONDS   how long to wait for the program to open the line and answer the
                      link test, which is repeated until then (10)
  --no-connect        talk at once
  --timeout SECONDS   how long to wait for each answer (5)
  --start-character N the program is to put the byte N before its answer to get
  --trace             print each message; bytes outside 0x20 to 0x7E as [xx]

Misbehaviour (not before the connection stands; the same seed does the same)
  --seed N            (1)
  --garble PERCENT    chance that one bit of a sent message is changed
  --drop PERCENT      chance that a message is not sent
  --noise PERCENT     chance that bytes which the program has to ignore are put before
                      and into a sent message
  --split             send messages in pieces
  --delay MS          wait before each message
  --garble-received PERCENT, --drop-received PERCENT
                      chance that a data line is damaged as it comes in: a bit is
                      changed, a byte lost. It is then asked for again.
  --nak-every N       refuse every N-th data line of a get once
  --stop-after N      fall silent after N data lines of the first transfer that has as
                      many, and go on with the next command

The controller is strict. Each message that comes must have its right checksum and
nothing before, inside or after it. A data line whose checksum is wrong is asked for
again, at most three times. Only a link test is sent again when its answer is missing
or damaged, twice; any other missing, damaged or unexpected answer fails the command,
and so does anything that comes unasked. A damaged request or data line that the
program acknowledges fails the command at its end.

Each command prints one line. Turnaround runs from when the last byte of a message is
handed to the system until the end of the next message has been read. After a command
that failed the rest is not attempted.

Exit status: 0 all went right, 1 a command or the line failed, 2 wrong usage or a
FILE that cannot be read, 3 stopped by --stop-after and otherwise right.
)";

}
