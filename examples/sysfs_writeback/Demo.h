// Demo.h: the whole cycle on a made-up sysfs.
#pragma once

// Makes a directory with a few devices, designates, checks, applies and updates, prints every step on standard output
// and removes the directory, also when SIGINT or SIGTERM comes, which ends the program thereafter. False, with a message
// on standard error, when the directory cannot be made or changed.
bool runDemo();
