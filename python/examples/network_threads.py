"""Remeshes a network on all cores by a pool of threads. The library releases the interpreter's lock.

Usage: network_threads.py [ELEMENTS]
"""

import os
from concurrent.futures import ThreadPoolExecutor

from network import compare, remesh


def remesh_all(batches):
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        return list(pool.map(remesh, batches))


if __name__ == "__main__":
    compare("on threads", remesh_all)
