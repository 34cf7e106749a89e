/**
 * @file console.h
 * @brief The shell's commands inside a process that uses the library, against whatever driver it has.
 *
 * A console carries out one command at a time and gives back what it prints. It writes to none of the
 * process's own streams, opens no file but a record of the tap, sets no signal handler and ends nothing. Any
 * number of consoles may be open, and used from any thread. ts_console_serve answers on a Unix socket, for
 * `tessel-shell --attach`; LD_PRELOAD of this library with TESSEL_CONSOLE in the environment does the same in
 * a program that knows nothing of it. docs/console.md tells of both.
 *
 * Functions return 0 or an errno. C99 and C++.
 */
#ifndef TESSEL_CONSOLE_H
#define TESSEL_CONSOLE_H

#include <stddef.h>

#include "pd_types.h"

PD_BEGIN_DECLS

/** What a console works on, and its bounds. All zeros are the defaults. */
typedef struct ts_console_options {
    pd_sess_hdl session;   /**< of the driver */
    uint32_t device;       /**< that the commands are for */
    uint8_t read_only;     /**< not 0: what writes is refused */
    uint32_t line_bytes;   /**< of a command at most; 0 stands for 64 KiB */
    uint32_t answer_bytes; /**< of what a command prints at most; 0 stands for 16 MiB */
    /**
     * Called on the console's thread between two steps of a long command, such as two entries of a walk: a
     * place to give way. Not 0 ends the command. May be null.
     */
    int (*between_steps)(void *cookie);
    void *cookie; /**< handed to it */
} ts_console_options;

/** A session of the shell inside this process. */
typedef struct ts_console ts_console;

enum {
    TS_CONSOLE_JSON = 1,    /**< each line of output, and each message, is a JSON document */
    TS_CONSOLE_VERBOSE = 2, /**< commands that make something tell its handle */
    TS_CONSOLE_UNTRACED = 4 /**< no trace stands behind the output */
};

enum {
    TS_CONSOLE_DONE = 0,
    TS_CONSOLE_BAD = 1, /**< `messages` tells why */
    TS_CONSOLE_QUIT = 2 /**< the command was quit or exit */
};

/** What a command gave. The texts end in a zero byte and live until the console's next command. */
typedef struct ts_console_answer {
    int status;            /**< one of the three above */
    const char *output;    /**< what it printed */
    size_t output_bytes;   /**< without the zero byte */
    const char *messages;  /**< what was wrong, one line each */
    size_t messages_bytes; /**< likewise */
} ts_console_answer;

/**
 * Opens a session, which takes commands until it is closed.
 *
 * @param options null for the defaults
 * @param console receives it
 * @return 0, or an errno
 */
int ts_console_open(const ts_console_options *options, ts_console **console);

/** Carries a command out. Its place in messages is the column. */
int ts_console_run(ts_console *console, const char *command, unsigned form, ts_console_answer *answer);

/** Ends the command that is being carried out, before its next step. From any thread. */
void ts_console_cancel(ts_console *console);

/** Not while it carries a command out. Null is allowed. */
void ts_console_close(ts_console *console);

/** How to answer on a socket. All zeros are the defaults. */
typedef struct ts_console_server_options {
    ts_console_options console; /**< `between_steps` and `cookie` are the server's own, and left alone */
    uint32_t clients;           /**< at once at most; 0 stands for 64 */
    const char *group;          /**< whose members may connect, too; null for none */
} ts_console_server_options;

/** The thread that answers on a socket. */
typedef struct ts_console_server ts_console_server;

/**
 * Makes the socket, with mode 0600 (0660 with a group), and answers on it from a thread of its own, which
 * takes no signals. Only the same user, root and members of the group are let in. A socket that nobody
 * answers on is replaced.
 *
 * @param path    of the socket
 * @param options null for the defaults
 * @param server  may be null for one that is never stopped
 * @return EADDRINUSE where somebody answers, or there is something else than a socket
 */
int ts_console_serve(const char *path, const ts_console_server_options *options, ts_console_server **server);

/** Ends what is being carried out, the thread and the socket. Null is allowed. */
void ts_console_stop(ts_console_server *server);

PD_END_DECLS

#endif
