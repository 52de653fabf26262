#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Writes what a screen reader is told of a running program: one showing node a line, "role|name|actions".

accessibles.py PROCESS [NAME]    with NAME: performs the default action of the node of that name instead
"""
import sys

import pyatspi


def showing(node):
    if node.getState().contains(pyatspi.STATE_SHOWING):
        yield node
    for child in node:
        if child:
            yield from showing(child)


def action_of(node):
    try:
        return node.queryAction()
    except NotImplementedError:
        return None


for application in pyatspi.Registry.getDesktop(0):
    if not application or application.get_process_id() != int(sys.argv[1]):
        continue
    for node in showing(application):
        action = action_of(node)
        if len(sys.argv) < 3:
            names = [action.getName(i) for i in range(action.nActions)] if action else []
            print(node.getRoleName(), node.name, " ".join(names), sep="|")
        elif node.name == sys.argv[2] and action:
            action.doAction(0)
            break
