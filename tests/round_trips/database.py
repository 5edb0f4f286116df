"""A table of a database, made from a Parquet file by the library that the program uses."""

import ctypes
from pathlib import Path

SUCCESS = 0


class Result(ctypes.Structure):
    _fields_ = [(name, ctypes.c_uint64) for name in ("a", "b", "c")] + [(name, ctypes.c_void_p) for name in "def"]


def text_in_sql(text):
    return "'" + text.replace("'", "''") + "'"


class Database:
    """One that is open; a context manager."""

    def __init__(self, libraries, path):
        self.library = ctypes.CDLL(str(Path(libraries) / "libduckdb.so"))
        self.library.duckdb_value_varchar.restype = ctypes.c_char_p
        self.library.duckdb_value_varchar.argtypes = [ctypes.c_void_p, ctypes.c_uint64, ctypes.c_uint64]
        self.library.duckdb_result_error.restype = ctypes.c_char_p
        self.path = str(path)
        self.database = ctypes.c_void_p()
        self.connection = ctypes.c_void_p()

    def __enter__(self):
        opened = self.library.duckdb_open(self.path.encode(), ctypes.byref(self.database))
        connected = self.library.duckdb_connect(self.database, ctypes.byref(self.connection))
        if (opened, connected) != (SUCCESS, SUCCESS):
            raise RuntimeError(f"{self.path} cannot be opened as a database")
        return self

    def __exit__(self, *_):
        self.library.duckdb_disconnect(ctypes.byref(self.connection))
        self.library.duckdb_close(ctypes.byref(self.database))

    def run(self, statement):
        """Gives the first value of the result, if there is one."""
        result = Result()
        ran = self.library.duckdb_query(self.connection, statement.encode(), ctypes.byref(result))
        if ran != SUCCESS:
            raise RuntimeError(self.library.duckdb_result_error(ctypes.byref(result)).decode())
        value = self.library.duckdb_value_varchar(ctypes.byref(result), 0, 0)
        self.library.duckdb_destroy_result(ctypes.byref(result))
        return value.decode() if value else None


def table_from_parquet(libraries, parquet, target):
    """The table bears the dictionary as its comment, as a Parquet file has it among its metadata."""
    with Database(libraries, target) as database:
        file = text_in_sql(str(parquet))
        database.run(f"CREATE TABLE data AS FROM {file}")
        described = database.run(
            f"SELECT decode(value) FROM parquet_kv_metadata({file}) WHERE decode(key) = 'statistics:resource'")
        if described is None:
            raise RuntimeError(f"{parquet} has no dictionary")
        database.run(f"COMMENT ON TABLE data IS {text_in_sql(described)}")
