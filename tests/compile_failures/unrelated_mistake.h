// SPDX-License-Identifier: MIT
unrelatedMistake anything;
