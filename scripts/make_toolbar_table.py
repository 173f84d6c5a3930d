#!/usr/bin/python3
"""Writes share/zefdata.dbf, the add-on's tool bars: of each its commands in their order, with what they are called."""
import pathlib

import dbase

ROOT = pathlib.Path(__file__).resolve().parent.parent

LAYERS = [("CloseSelLayer", "关闭图层"), ("OpenSelLayer", "只开选择层"), ("OpenLayer", "打开图层"),
          ("SetAllPipeLayOpen", "打开全部层"), ("LockSelLayer", "锁定图层"), ("UnLockSelLayer", "解锁图层"),
          ("sfxc", "锁非选层"), ("FrozenLayer", "冻结图层"), ("UnFrozenAllLayer", "全部解冻"),
          ("FrozenViewLayer", "视口冻结"), ("UnFrozenViewAllLayer", "视口解冻"), ("EraseSelLayer", "删除图层"),
          ("ConvertLayer", "图层转换"), ("tbds", "图变单色"), ("yshf", "颜色恢复")]
SETTINGS = [("gxsz", "管线设置"), ("dcsz", "导出设置"), ("drsz", "导入设置")]

FIELDS = [("BAR", "C", 20, 0), ("PLACE", "N", 3, 0), ("COMMAND", "C", 32, 0), ("NAME", "C", 20, 0)]

if __name__ == "__main__":
    rows = [(bar, place, command, name) for bar, commands in (("图层", LAYERS), ("设置", SETTINGS))
            for place, (command, name) in enumerate(commands, 1)]
    (ROOT / "share" / "zefdata.dbf").write_bytes(dbase.table(FIELDS, rows))
