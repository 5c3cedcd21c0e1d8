/* SPDX-FileCopyrightText: the Tavelo authors
 * SPDX-License-Identifier: MIT
 *
 * A wire with distance between two network namespaces; `far` calls it, as root.
 *
 *   farwire RTT_MS RATE_KBIT LOSS_PPM
 *
 * Makes two TUN devices, fw-near and fw-far, prints "ready", and carries packets between them: each
 * leaves at the line's rate (0: unlimited), takes half of the round trip, and is lost with the given
 * chance (per million; the same packets every time). At most 256 KiB wait for the line in each
 * direction; what comes on top is dropped, as a router would. Ends on SIGTERM.
 */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <linux/if.h>
#include <linux/if_tun.h>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <time.h>
#include <unistd.h>

enum { maxPacket = 2048, slots = 1 << 15, maxWaiting = 256 * 1024 };

struct packet
{
    long long due; /* nanoseconds of the monotonic clock */
    int size;
    char bytes[maxPacket];
};

struct way
{
    int from, to;
    struct packet *ring;
    unsigned head, tail; /* packets that came in and went out, ever */
    long long lineFree;  /* when the line has sent all that was given to it */
};

struct wire
{
    long long delay; /* nanoseconds, one way */
    double nsPerByte;
    long loss; /* per million */
};

static long long now(void)
{
    struct timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1000000000LL + t.tv_nsec;
}

static int openTun(const char *name)
{
    struct ifreq request;
    const int fd = open("/dev/net/tun", O_RDWR | O_NONBLOCK);
    memset(&request, 0, sizeof request);
    request.ifr_flags = IFF_TUN | IFF_NO_PI;
    strncpy(request.ifr_name, name, IFNAMSIZ - 1);
    if (fd < 0 || ioctl(fd, TUNSETIFF, &request) < 0) {
        perror(name);
        exit(1);
    }
    return fd;
}

/* Gives out what is due; returns when the next packet will be, -1 when there is none. */
static long long deliver(struct way *way)
{
    while (way->tail != way->head) {
        const struct packet *packet = &way->ring[way->tail % slots];
        if (packet->due > now())
            return packet->due;
        if (write(way->to, packet->bytes, packet->size) < 0 && errno == EAGAIN)
            return now() + 1000000;
        ++way->tail;
    }
    return -1;
}

static void take(struct way *way, const struct wire *wire)
{
    while (way->head - way->tail < slots) {
        struct packet *packet = &way->ring[way->head % slots];
        packet->size = (int)read(way->from, packet->bytes, maxPacket);
        if (packet->size <= 0)
            return;
        const long long at = now();
        if (way->lineFree < at)
            way->lineFree = at;
        if (wire->nsPerByte > 0 && (double)(way->lineFree - at) / wire->nsPerByte > maxWaiting)
            continue;
        if (wire->loss > 0 && random() % 1000000 < wire->loss)
            continue;
        way->lineFree += (long long)(packet->size * wire->nsPerByte);
        packet->due = way->lineFree + wire->delay;
        ++way->head;
    }
}

static void wait(struct way ways[2], long long until)
{
    long long left = until < 0 ? 1000000000LL : until - now();
    if (left < 0)
        left = 0;
    const struct timespec most = {left / 1000000000LL, left % 1000000000LL};
    struct pollfd fds[2] = {{ways[0].from, POLLIN, 0}, {ways[1].from, POLLIN, 0}};
    ppoll(fds, 2, &most, NULL);
}

int main(int argc, char **argv)
{
    if (argc != 4) {
        fprintf(stderr, "usage: farwire RTT_MS RATE_KBIT LOSS_PPM\n");
        return 2;
    }
    const double rate = atof(argv[2]);
    const struct wire wire = {(long long)(atof(argv[1]) * 500000.0), rate > 0 ? 8e6 / rate : 0,
                              atol(argv[3])};
    const int near = openTun("fw-near"), far = openTun("fw-far");
    struct way ways[2] = {{near, far, NULL, 0, 0, 0}, {far, near, NULL, 0, 0, 0}};
    for (int i = 0; i < 2; ++i)
        ways[i].ring = malloc(sizeof(struct packet) * slots);
    puts("ready");
    fflush(stdout);
    for (;;) {
        const long long first = deliver(&ways[0]), second = deliver(&ways[1]);
        wait(ways, first < 0 || (second >= 0 && second < first) ? second : first);
        take(&ways[0], &wire);
        take(&ways[1], &wire);
    }
}
