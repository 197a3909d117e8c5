"""Remeshes a network on worker processes of dask.distributed on this machine.

Usage: network_dask.py [ELEMENTS]

To use other machines, give Client the address of their scheduler. The machines need vornik1d and network.py.
"""

import os
import tempfile

from dask.distributed import Client, LocalCluster
from network import compare, remesh


def main() -> None:
    with tempfile.TemporaryDirectory() as scratch, LocalCluster(
        n_workers=os.cpu_count(), threads_per_worker=1, dashboard_address=None, local_directory=scratch
    ) as cluster, Client(cluster) as client:
        compare("on worker processes", lambda batches: client.gather(client.map(remesh, batches)))


if __name__ == "__main__":  # workers import this file too
    main()
